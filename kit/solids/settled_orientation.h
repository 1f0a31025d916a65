#pragma once

#include <vector>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Brings equations, orientation and volumes up to date after moves, as
/// `TMOD3D::comput_mode_aux_parm` does, to the last bit. Where the faces of each body agree with
/// their neighbours already, which no move changes, it turns faces only when a volume becomes
/// negative; so the walk over all faces is left out, and equations are computed only where vertices
/// have moved.
class SettledOrientation {
public:
    /// After a move of what is gathered in a model that was up to date. Linear.
    void renew(TMOD3D& model);

    /// Looks at the faces, as the first `renew` would. Linear.
    void prepare(const TMOD3D& model);

    /// The model has other faces.
    void forget() { state_ = State::unknown; }

private:
    enum class State { unknown, settled, unsettled };

    bool settle(const TMOD3D& model);
    void find_reached(const TMOD3D& model);
    bool is_turned(const TMOD3D& model);

    State state_ = State::unknown;
    std::vector<int> neighbour_;   // of each face, towards the face that its piece is known by
    std::vector<bool> is_reached_; // faces that hang together with the first one of their body
    std::vector<double> volumes_;
};

} // namespace korvel::kit
