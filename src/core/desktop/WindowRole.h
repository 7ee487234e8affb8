#pragma once

// Windows that are neither dialogs nor the main window are told to an aid for the blind as windows, too: Qt
// takes each for a part of another. Once for the program, before there are windows.
void TellWindowRoles();
