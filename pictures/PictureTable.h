#pragma once

#include <span>

/// Colours that the accents of a part are turned into; parts are drawn in blue.
enum class Tone { Blue, Green, Teal, Orange, Red, Violet, Brown, Grey, Yellow, Old };

enum class Group { Listed, SharedOnly, Window };

/// One picture: a subject, and what is laid over it. An empty name is nothing.
struct PictureRow {
    const char *Key;
    const char *Subject;
    Tone SubjectTone = Tone::Blue;
    const char *Badge = "";        ///< lower right corner
    const char *LeftBadge = "";    ///< lower left corner
    const char *UpperNumber = "";  ///< plate across the upper half
    const char *LowerNumber = "";  ///< plate across the lower half
    Group ListGroup = Group::Listed;
};

/// The rows of the picker's list come first, in its order.
std::span<const PictureRow> PictureTable();
