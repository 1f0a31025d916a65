// The environment of the library in a fuzzing program: no drawing, no notices, no trace files.

#include <cstdio>

#include "korvel/platform/opengl.h"
#include "tests/fuzz/exercise.h"

namespace korvel::test {

FILE* nowhere() {
    static FILE* const sink = std::fopen("/dev/null", "w");
    return sink;
}

FILE* stream_over(const char* text, std::size_t size) {
    // fmemopen refuses an empty buffer.
    return size > 0 ? fmemopen(const_cast<char*>(text), size, "r") : std::fopen("/dev/null", "r");
}

} // namespace korvel::test

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    PLYDT::set_trace_files(false);
    korvel::set_message_box_handler([](const char*, unsigned) { return IDOK; });
    return 0;
}

extern "C" {

void glBegin(GLenum /*mode*/) {}
void glEnd() {}
void glVertex3d(GLdouble /*x*/, GLdouble /*y*/, GLdouble /*z*/) {}
void glVertex3dv(const GLdouble* /*v*/) {}
void glNormal3dv(const GLdouble* /*v*/) {}
void glColor3f(GLfloat /*r*/, GLfloat /*g*/, GLfloat /*b*/) {}
void glColor3d(GLdouble /*r*/, GLdouble /*g*/, GLdouble /*b*/) {}
void glColor4f(GLfloat /*r*/, GLfloat /*g*/, GLfloat /*b*/, GLfloat /*a*/) {}
void glPointSize(GLfloat /*size*/) {}
}
