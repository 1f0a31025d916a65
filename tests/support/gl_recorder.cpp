#include "tests/support/gl_recorder.h"

#include <ostream>
#include <utility>

#include "korvel/platform/opengl.h"

namespace korvel::test {
namespace {

GlCalls calls;

} // namespace

void PrintTo(const GlCall& call, std::ostream* out) {
    *out << call.name;
    for (const double x : call.numbers) {
        *out << ' ' << x;
    }
}

GlCalls take_gl_calls() {
    return std::exchange(calls, {});
}

} // namespace korvel::test

using korvel::test::calls;

extern "C" {

void glBegin(GLenum mode) {
    calls.push_back({"begin", {double(mode)}});
}
void glEnd() {
    calls.push_back({"end", {}});
}
void glVertex3d(GLdouble x, GLdouble y, GLdouble z) {
    calls.push_back({"vertex", {x, y, z}});
}
void glVertex3dv(const GLdouble* v) {
    calls.push_back({"vertex of", {v[0], v[1], v[2]}});
}
void glNormal3dv(const GLdouble* v) {
    calls.push_back({"normal", {v[0], v[1], v[2]}});
}
void glColor3f(GLfloat r, GLfloat g, GLfloat b) {
    calls.push_back({"colour 3f", {r, g, b}});
}
void glColor3d(GLdouble r, GLdouble g, GLdouble b) {
    calls.push_back({"colour 3d", {r, g, b}});
}
void glColor4f(GLfloat r, GLfloat g, GLfloat b, GLfloat a) {
    calls.push_back({"colour 4f", {r, g, b, a}});
}
void glPointSize(GLfloat size) {
    calls.push_back({"point size", {size}});
}
void glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
    calls.push_back({"viewport", {double(x), double(y), double(width), double(height)}});
}
void glClear(GLbitfield buffers) {
    calls.push_back({"clear", {double(buffers)}});
}
void glEnable(GLenum what) {
    calls.push_back({"enable", {double(what)}});
}
void glDepthFunc(GLenum kept) {
    calls.push_back({"depth", {double(kept)}});
}
void glMatrixMode(GLenum mode) {
    calls.push_back({"matrix", {double(mode)}});
}
void glLoadIdentity() {
    calls.push_back({"identity", {}});
}
void glOrtho(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble near_plane,
             GLdouble far_plane) {
    calls.push_back({"ortho", {left, right, bottom, top, near_plane, far_plane}});
}
}
