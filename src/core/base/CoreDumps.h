#pragma once

// A program that crashes leaves no image of its memory, which has passwords and messages in it. For the rest
// of the process and its children; call it first.
void ForbidCoreDumps();
