#pragma once

// The look of the whole program, set once before the first window.

/// Fusion style and a light palette: the widgets draw black on light, also on a dark desktop.
void applyAppearance();
