#include "Orv/Calendar/OrvDateTime.h"
int main(void) { return 0; }
