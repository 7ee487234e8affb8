#pragma once

class QFileDialog;

// Lets a file dialog tell files by what the system says of them, never by their contents: a look into a file
// of a share that does not answer, or of /proc, would hold the whole program. On the windows' thread.
void UsePlainFileIcons(QFileDialog& dialog);
