#pragma once

/// What the window tree tells the painter.
namespace Painter
{
/// Something is invalid.
void request();
/// A window came, went, moved or changed its order: what was found out about visible pieces is void.
void treeChanged();
/// Number of the present or last round of painting.
unsigned turn();
} // namespace Painter
