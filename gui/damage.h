#pragma once

/// What the window tree leaves for the painter. It lies below both, so that the tree need not know who
/// paints.
struct Damage {
    bool isRequested = false; ///< something has become invalid
    /// Counts what happens to the tree: a window came, went, moved or changed its order. What was found out
    /// about visible pieces before that is void.
    unsigned treeVersion = 0;
    unsigned round = 0; ///< number of the present or last round of painting
};
inline Damage damage;
