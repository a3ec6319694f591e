// A program that is linked against the library: enters a scenario and returns.
#include "processend/KTX_TIM_EndScenario.h"

int main(int argc, char** argv) {
  return argc == 2 ? enterEndScenario(argv[1]) : 2;
}
