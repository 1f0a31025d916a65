#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/options.h"
#include "kit/kit.h"

namespace korvel::command {

/// The files that a command writes besides its report: `-o FILE`, `--leftover FILE`, and
/// `--picture FILE` with `--size WxH`. For the name `-` it is standard output, and the report goes
/// to standard error; a picture there is a PNG.
class Outputs {
public:
    /// What the suffix of a file can select beside korvel's own format.
    enum class Formats { own, features, meshes };

    /// Adds `-o` to a command; `contents` describes it in the help.
    Option add_file(Options options, const std::string& contents, Formats formats = Formats::own);

    /// Adds a required `-o` for a model.
    void add_model(Options options);

    /// Adds `--picture` and `--size`.
    void add_picture(Options options);

    /// Adds `--leftover`.
    void add_leftover(Options options);

    /// Looks for everything that would make `write` fail at the end of a long run. Throws
    /// an input error or an output error.
    void check() const;

    bool has_file() const { return !file_.empty(); }
    const std::string& picture() const { return picture_; }

    using WriteFile = std::function<void(kit::OutputFile& out)>;
    using Paint = std::function<void(kit::PictureCanvas& canvas)>;
    using MakeFeatures = std::function<kit::Features()>;
    using MakeMesh = std::function<kit::Mesh()>;

    /// What writes a file, and what makes the features or the mesh of one whose suffix selects such
    /// a format.
    struct Content {
        Content() = default;
        template <class Write>
        Content(Write write_file, MakeFeatures make_features = {})
            : write(std::move(write_file)), features(std::move(make_features)) {}

        WriteFile write;
        MakeFeatures features;
        MakeMesh mesh;
    };

    /// Writes the requested files. They replace their targets once all are complete.
    void write(const Content& file, const Paint& paint = {}, const Content& leftover = {}) const;

    /// Writes a model under `-o`.
    void write_model(const kit::Solids& solids) const;

    /// Whether a model is written as korvel's own file.
    bool is_model_file() const { return !kit::mesh_format(kit::path_of(file_)); }

    /// Writes a picture of the requested size into a file of another name.
    void write_picture(const std::string& file, const Paint& paint) const;

private:
    struct Name {
        std::string file;
        std::string purpose; ///< "by --output"
        Formats formats = Formats::own;
    };

    std::vector<Name> named() const;
    void check_names() const;
    void paint_into(kit::OutputFile& out, const std::string& file, const Paint& paint) const;

    std::string file_;
    Formats formats_ = Formats::own; ///< of `file_`
    std::string leftover_;
    std::string picture_;
    std::string size_ = default_picture_size;
    Option size_option_;
};

} // namespace korvel::command
