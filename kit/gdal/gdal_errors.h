#pragma once

#include <string>

#include <cpl_error.h>

namespace korvel::kit {

/// While it exists, GDAL's errors in this thread come here and are not printed.
class GdalErrors {
public:
    GdalErrors();
    ~GdalErrors();
    GdalErrors(const GdalErrors&) = delete;
    GdalErrors& operator=(const GdalErrors&) = delete;

    bool has_failed() const { return number_ != CPLE_None; }

    /// Whether the system refused a file or memory.
    bool is_refused_by_system() const;

    /// GDAL's text of the first failure in one line, or `otherwise` if there was none.
    std::string text(const std::string& otherwise) const;

    /// Forgets what has failed so far.
    void clear();

private:
    static void CPL_STDCALL take(CPLErr severity, CPLErrorNum number, const char* text);

    CPLErrorNum number_ = CPLE_None;
    std::string text_;
};

} // namespace korvel::kit
