#pragma once

namespace vortan {

class MainForm;

// What acts on the form in front. A form that has no such function, or nothing to put out, is told in a box.
void OutputPrint(MainForm& main);
void OutputCopy(MainForm& main);
void SetupFont(MainForm& main);

}  // namespace vortan
