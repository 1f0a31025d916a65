#include "korvel/geometry/triutvalinst.h"

#include "korvel/base/members.h"

TriUtvalinst::TriUtvalinst(const TriUtvalinst& src) {
    *this = src;
}

TriUtvalinst::~TriUtvalinst() {
    RemoveAll();
}

TriUtvalinst& TriUtvalinst::operator=(const TriUtvalinst& src) {
    korvel::copy_members(*this, src, &TriUtvalinst::triples_1, &TriUtvalinst::triples_2);
    return *this;
}

void TriUtvalinst::Copy(const TriUtvalinst& src) {
    *this = src;
}

void TriUtvalinst::RemoveAll() {
    korvel::remove_lists(*this, &TriUtvalinst::triples_1, &TriUtvalinst::triples_2);
}
