#pragma once

// Zoom as whole multiples of the visible width, and where the scrolled view
// stands afterwards. Widths and offsets in pixels of the waveform's content.
namespace zoom {

// The widest a zoomed waveform may grow: a widget cannot be much wider.
constexpr int WidestContent = 16'000'000;

// The largest factor a view `visibleWidth` wide can take.
int largestFactor(int visibleWidth);

// The smallest whole factor at which a selection from `startPercent` to
// `endPercent` of the track fills at least half the visible width (so it is
// still seen whole); 0 for an empty or reversed selection.
int factorForSelection(float startPercent, float endPercent, int visibleWidth);

// The scroll offset that shows the stretch from `startPercent` to
// `endPercent` centred in a view `visibleWidth` wide of content
// `contentWidth` wide, within the content's bounds.
int offsetCentring(float startPercent, float endPercent, int contentWidth, int visibleWidth);

// The scroll offset after a zoom that keeps the point of the content under
// the pointer where it was: `fraction` of the content was at `pointerX` in
// the view before; now the content is `contentWidth` wide.
int offsetKeeping(double fraction, int pointerX, int contentWidth, int visibleWidth);

// While a zoomed track plays, the view follows the play marker: the scroll
// offset stays while the marker at `markerX` of the content is in sight;
// once it leaves the visible part, the view pages so that it stands at the
// left edge (within the content's bounds).
int offsetFollowing(double markerX, int offset, int contentWidth, int visibleWidth);

} // namespace zoom
