include(CMakeFindDependencyMacro)

set(OpenGL_GL_PREFERENCE LEGACY)
find_dependency(OpenGL)
include("${CMAKE_CURRENT_LIST_DIR}/korvelTargets.cmake")
