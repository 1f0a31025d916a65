#include "apps/workbench/window/program.h"

int main(int argc, char** argv) {
    return korvel::workbench::run_program(argc, argv);
}
