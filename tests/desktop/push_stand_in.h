// The test program in two other roles: the system's Bluetooth services, and a program that sends.
#pragma once

// Runs the role that the arguments name; -1 when they name none.
int RunPushRole(int argc, char** argv);
