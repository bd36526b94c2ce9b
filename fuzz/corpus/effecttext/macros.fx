#define MAX(a, b) ((a) > (b) ? (a) : (b))
#define CAT(a, b) a ## b
#define STR(a) #a
#if defined(MAX) && MAX(1, 2) == 2 \
    || 0
float x = MAX(MAX(1, 2), CAT(1, 2));
#elif 1
#error no
#else
#endif
#ifndef NONE
string y = STR(a "b");
#undef MAX
#endif
#line 10 "f"
float z = __LINE__;
