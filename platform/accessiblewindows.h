#pragma once
// How the program's windows present themselves to screen readers.

namespace zelvan {

// Every top-level window reads as a window, so an operator on a screen reader
// finds it by its title: the toolkit gives a plain top-level widget the role
// of filler, as it would a panel inside a window. Call once the application
// object exists; calling again does nothing more.
void presentWindowsToScreenReaders();

}  // namespace zelvan
