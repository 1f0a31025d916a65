#pragma once

#include <string>

namespace korvel::kit {

/// A part of the kit in a shared library of its own, so that programs which do not need it do not
/// load the libraries that it is linked with. It implements an interface of virtual functions.
struct Module {
    /// The interface; nothing where there is no module.
    const void* implementation = nullptr;

    /// Without an interface: how a message goes on after the name of what is needed and a comma, as
    /// in "which is not installed: libkorvel-proj.so: cannot open shared object file: …".
    std::string missing = {};
};

/// Loads `libNAME.so`, which stays loaded, from the run path of what contains the kit or the
/// system's folders. A module of another version of korvel is none.
Module load_module(const std::string& name);

/// In place of a module that the build has left out by an option.
Module module_left_out(const std::string& option);

/// What a module exports under the name `korvel_module`: returns its interface, or nothing when
/// `version` is not that of the korvel it was built with.
using ModuleEntry = const void* (*)(const char* version);

} // namespace korvel::kit
