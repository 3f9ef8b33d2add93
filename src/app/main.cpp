#include "shell/Main.h"

int main(int argc, char** argv) {
    return ModMain::Main(argc, argv);
}
