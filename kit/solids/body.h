#pragma once

#include <array>
#include <span>
#include <string>

#include "kit/base/colour.h"
#include "kit/base/indexed_range.h"
#include "kit/base/points.h"
#include "kit/solids/box.h"
#include "kit/solids/surface.h"
#include "korvel/module/korvel.h"

// Bodies and faces of `Solids`, as views: they refer to the solids and are valid until these
// change.

namespace korvel::kit {

class Solids;

/// The colour of a body. In views the lightness follows from how much a face faces the viewer.
struct BodyColour {
    double hue = 80;         ///< degrees, above 0 and up to 360
    double saturation = 0.5; ///< 0 to 1, as are lightness and alpha
    double lightness = 0.5;
    double alpha = 1; ///< opacity; not stored in files

    Colour rgb() const;
    friend bool operator==(const BodyColour&, const BodyColour&) = default;
};

/// A triangle that bounds one body, or two that share it.
class Face {
public:
    Face(const TMOD3D& model, int index) : model_(&model), index_(index) {}

    int index() const { return index_; }

    /// Its vertices in boundary order: counter-clockwise seen from outside of a closed body.
    std::span<const int> vertices() const;

    /// Its edges, one after another around it, one way or the other.
    std::span<const int> edges() const;

    /// The position of vertex k.
    Point3 corner(int k) const;

    /// The unit vector perpendicular to the face, outwards; not finite for a face without area.
    Point3 normal() const;

    /// In square units of the model.
    double area() const;

    /// The other faces at its edges, each once.
    std::span<const int> neighbours() const;

    /// The bodies that list it.
    std::span<const int> bodies() const;

private:
    const POLY3D& record() const { return model_->polys[index_]; }

    const TMOD3D* model_;
    int index_;
};

/// A body of `Solids`.
class Body {
public:
    Body(const Solids& solids, int index) : solids_(&solids), index_(index) {}

    int index() const { return index_; }

    /// Its name, empty unless it has one.
    const std::string& name() const;

    BodyColour colour() const;

    /// In cubic units of the model, without its cavities; without meaning for an open body. Every
    /// body is measured with an orientation of its own: faces that are shared with another body may
    /// run the wrong way for this one in the model, and `BODY3D::volume` may be negative.
    /// Near-linear in the body.
    double volume() const;

    /// Around its vertices; empty for a body without faces. Linear in the body.
    Box bounds() const;

    /// How its faces are connected: closed or open, how many pieces. Near-linear in the body.
    Surface surface() const;

    /// A face of the body, as a function of its position in the body's list.
    struct FaceAt {
        const TMOD3D* model = nullptr;
        const CArray<int>* listed = nullptr;
        Face operator()(int k) const { return {*model, (*listed)[k]}; }
    };

    /// Its faces as a range of `Face`.
    IndexedRange<FaceAt> faces() const;

    /// The indices of its vertices and of its edges, each once.
    std::span<const int> vertices() const;
    std::span<const int> edges() const;

    /// The bodies that share a face with this one.
    std::span<const int> neighbours() const;

private:
    const BODY3D& record() const;

    const Solids* solids_;
    int index_;
};

} // namespace korvel::kit
