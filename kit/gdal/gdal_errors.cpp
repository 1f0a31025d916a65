#include "kit/gdal/gdal_errors.h"

namespace korvel::kit {

GdalErrors::GdalErrors() {
    CPLPushErrorHandlerEx(take, this);
}

GdalErrors::~GdalErrors() {
    CPLPopErrorHandler();
    CPLErrorReset();
}

bool GdalErrors::is_refused_by_system() const {
    return number_ == CPLE_FileIO || number_ == CPLE_OutOfMemory || number_ == CPLE_OpenFailed ||
           number_ == CPLE_NoWriteAccess;
}

std::string GdalErrors::text(const std::string& otherwise) const {
    return text_.empty() ? otherwise : text_;
}

void GdalErrors::clear() {
    number_ = CPLE_None;
    text_.clear();
}

void CPL_STDCALL GdalErrors::take(CPLErr severity, CPLErrorNum number, const char* text) {
    auto& errors = *static_cast<GdalErrors*>(CPLGetErrorHandlerUserData());
    if (severity < CE_Failure || errors.has_failed()) {
        return; // what follows from the first failure
    }
    errors.number_ = number == CPLE_None ? CPLE_AppDefined : number;
    for (const char* c = text; *c != '\0'; ++c) {
        errors.text_ += *c == '\n' || *c == '\r' ? ' ' : *c;
    }
}

} // namespace korvel::kit
