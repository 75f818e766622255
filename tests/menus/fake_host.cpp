#include "menu_fakes.h"

std::vector<uint32_t> FakeHost::commands;
std::vector<std::tuple<uint32_t, bool, bool>> FakeHost::updates;
bool FakeHost::answer = true;
int FakeHost::closes;
int FakeHost::stateCalls;
