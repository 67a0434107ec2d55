#pragma once

namespace vortan {

/// From now on the frame of the focus shows in every window as long as the keyboard was used last, also in
/// one that has just been opened. The toolkit waits for the first Tab in each window. Once for each
/// QApplication; further calls do nothing.
void ShowFocusFrames();

}  // namespace vortan
