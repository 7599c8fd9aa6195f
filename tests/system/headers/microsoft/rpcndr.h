/* Interfaces know their identifiers, as in Microsoft's header. */
#include_next <rpcndr.h>
#undef MIDL_INTERFACE
#define MIDL_INTERFACE(text) struct __declspec(uuid(text))
