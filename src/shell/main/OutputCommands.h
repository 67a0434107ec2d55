#pragma once

namespace vortan {

class MainForm;

// What acts on the form in front. A form that has no such function, or nothing to put out, is told in a box.
void OutputPrint(MainForm& main);
void OutputCopy(MainForm& main);
void SetupFont(MainForm& main);

/// Writes the active project as a web page, after questions for the costs and for the name of the file.
void OutputPublish(MainForm& main);

}  // namespace vortan
