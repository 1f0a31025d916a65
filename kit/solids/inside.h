#pragma once

#include <algorithm>
#include <array>
#include <utility>

#include "kit/base/points.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// The first body of a model that contains a point, or -1 if none does.
///
/// The library counts the faces that one ray meets, and a ray through an edge or a vertex, or along
/// a face, may count wrongly. So rays go in directions along which no usual model has anything, and
/// the first answer that three of them give is returned. Near an open body they may disagree, and
/// the most frequent answer of all rays is taken. A point on a surface belongs to either side.
///
/// Takes three rays against every face, as a rule.
int body_at(const TMOD3D& model, const Point3& point);

/// The direction of a ray of that kind, from 0.
Point3 direction_of_ray(int ray);

/// The most rays that a point takes.
inline constexpr int most_rays = 15;

/// The body that `answer_of(ray)` names first for three rays, or the most frequent one.
template <class AnswerOf>
int vote_of_rays(AnswerOf answer_of) {
    constexpr int enough = 3;
    std::array<std::pair<int, int>, most_rays> votes; // bodies, each with its votes
    auto* end = votes.begin();
    for (int ray = 0; ray < most_rays; ++ray) {
        const int answer = answer_of(ray);
        const auto vote = std::find_if(votes.begin(), end,
                                       [&](const auto& other) { return other.first == answer; });
        if (vote == end) {
            *end++ = {answer, 0};
        }
        if (++vote->second == enough) {
            return answer;
        }
    }
    // Of several with the same number of votes the first body.
    return std::max_element(votes.begin(), end,
                            [](const auto& a, const auto& b) {
                                return a.second != b.second ? a.second < b.second
                                                            : a.first > b.first;
                            })
        ->first;
}

} // namespace korvel::kit
