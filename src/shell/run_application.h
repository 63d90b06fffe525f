// The whole run of the program, from its arguments to its exit status.
#pragma once

constexpr int kExitDone = 0;
constexpr int kExitUsage = 2;        // wrong usage, or what this build does not offer
constexpr int kExitHandedOver = 255; // -1, as a process ends with it

int RunTessera(int argc, char** argv, const char* version);
