#include "apps/qorview/Program.h"

int main(int p_argc, char** p_argv) {
    return Qor::Chart::QorView::Program::Main(p_argc, p_argv);
}
