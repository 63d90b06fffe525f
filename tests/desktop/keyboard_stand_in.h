// The test program in two other roles: the desktop's keyboard service, and a program that asks it.
#pragma once

// Runs the role that the arguments name; -1 when they name none.
int RunKeyboardRole(int argc, char** argv);
