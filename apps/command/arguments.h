#pragma once

#include <string>
#include <vector>

#include "kit/kit.h"

namespace korvel::command {

/// Of pictures, when no size is given.
constexpr const char* default_picture_size = "1600x1000";

/// By which models are turned in views, when no angles are given.
constexpr const char* default_angles = "30,-60";

/// A point of real coordinates as a user gave it.
struct RealPoint {
    double x = 0;
    double y = 0;
};

// Each reads the text of an argument and throws an input error, naming the option, when it does not
// fit.

/// X,Y in integers of 32 bits.
tagPOINT parse_lattice_point(const std::string& option, const std::string& text);

/// X,Y in finite numbers.
RealPoint parse_real_point(const std::string& option, const std::string& text);

/// X,Y,Z in finite numbers.
kit::Point3 parse_point3(const std::string& option, const std::string& text);

/// WxH in pixels, each from 16 to 20000.
kit::PictureSize parse_picture_size(const std::string& option, const std::string& text);

/// X,Y,X,Y in finite numbers: two opposite corners that differ in x and y.
kit::Rectangle parse_box(const std::string& option, const std::string& text);

/// As many finite numbers, separated by commas, as `form` has commas and one: "LO,HI". Those in
/// brackets may be left out: "DX,DY[,DZ]". `form` is the expected form in the message.
std::vector<double> parse_reals(const std::string& option, const std::string& text,
                                const std::string& form);

/// Throws an input error: "--levels: '5' is not two levels LO,HI".
[[noreturn]] void refuse(const std::string& option, const std::string& text,
                         const std::string& expected);

/// Throws unless the factor is between a millionth and a million.
void check_stretch(double factor);

/// Throws unless the tolerance is finite and not negative.
void check_tolerance(double tolerance);

} // namespace korvel::command
