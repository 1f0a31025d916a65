#include "korvel/geometry/triutvalinst.h"

TriUtvalinst::TriUtvalinst(const TriUtvalinst& src) {
    *this = src;
}

TriUtvalinst::~TriUtvalinst() {
    RemoveAll();
}

TriUtvalinst& TriUtvalinst::operator=(const TriUtvalinst& src) {
    if (this != &src) {
        triples_1.Copy(src.triples_1);
        triples_2.Copy(src.triples_2);
    }
    return *this;
}

void TriUtvalinst::Copy(const TriUtvalinst& src) {
    *this = src;
}

void TriUtvalinst::RemoveAll() {
    triples_1.RemoveAll();
    triples_2.RemoveAll();
}
