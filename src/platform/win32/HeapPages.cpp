#include "platform/HeapPages.h"

void MakeHeapPages()
{}
