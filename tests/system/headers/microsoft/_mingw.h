/* In the form that Microsoft's compiler reads, which also says that these are declarations. */
#include_next <_mingw.h>
#undef __MINGW_IMPORT
#define __MINGW_IMPORT extern __declspec(dllimport)
