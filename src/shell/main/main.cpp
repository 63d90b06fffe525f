// tessera: the calendar's window.
#include "shell/run_application.h"

int main(int argc, char** argv)
{
    return RunTessera(argc, argv, TESSERA_VERSION);
}
