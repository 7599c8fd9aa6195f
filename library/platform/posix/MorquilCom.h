/*
 * The part of COM that the Morquil library and its hosts need on systems other than Windows, with the Windows binary
 * contract: the sizes, the layout of GUIDs and strings, the order of virtual functions. C and C++.
 *
 * The generated header MorquilAPI.h includes this file wherever <windows.h> does not exist; a host includes
 * MorquilAPI.h alone and compiles the same source on every system.
 *
 *     #include "MorquilAPI.h"
 *     #include "MorquilEntry.h"
 *
 *     IMorquilDiscovery* discovery = GetMorquilDiscoveryInstance_0000();
 *     BSTR address = SysAllocString(u"192.168.10.60");
 *
 * Text literals are u"..." here and L"..." on Windows; OLESTR("...") is right on both.
 *
 * The identifiers (IID_IMorquilDevice, CLSID_CMorquilDiscovery, ...) are constants that MorquilAPI.h defines in place:
 * no library has to be linked for them.
 */
#ifndef MORQUIL_COM_H
#define MORQUIL_COM_H

#ifdef _WIN32
#error "MorquilCom.h stands in for <windows.h> and <ole2.h>; on Windows include those."
#endif

#include <stddef.h>
#include <stdint.h>
#include <string.h>
#ifdef __cplusplus
#include <type_traits>
#else
#include <uchar.h>
#endif

/* Keeps the generated header from including <windows.h>. */
#define COM_NO_WINDOWS_H

/* ---- Numbers: as wide as on Windows, whatever `long` is here ---------------------------------------------------- */

typedef int32_t BOOL;
typedef int32_t INT;
typedef int32_t LONG;
typedef uint8_t BYTE;
typedef uint16_t WORD;
typedef uint32_t UINT;
typedef uint32_t ULONG;
typedef uint32_t DWORD;
typedef uint64_t UINT64;
typedef int32_t HRESULT;
typedef void* LPVOID;

#ifndef TRUE
#define TRUE 1
#define FALSE 0
#endif

/* ---- Results ---------------------------------------------------------------------------------------------------- */

#ifdef __cplusplus
#define MORQUIL_RESULT(number) static_cast<HRESULT>(number)
#else
#define MORQUIL_RESULT(number) ((HRESULT)(number))
#endif

/* clang-format off */
#define S_OK                      MORQUIL_RESULT(0)
#define S_FALSE                   MORQUIL_RESULT(1)
#define E_UNEXPECTED              MORQUIL_RESULT(0x8000FFFFu)
#define E_NOTIMPL                 MORQUIL_RESULT(0x80004001u)
#define E_NOINTERFACE             MORQUIL_RESULT(0x80004002u)
#define E_POINTER                 MORQUIL_RESULT(0x80004003u)
#define E_FAIL                    MORQUIL_RESULT(0x80004005u)
#define E_ACCESSDENIED            MORQUIL_RESULT(0x80070005u)
#define E_OUTOFMEMORY             MORQUIL_RESULT(0x8007000Eu)
#define E_INVALIDARG              MORQUIL_RESULT(0x80070057u)
#define CLASS_E_NOAGGREGATION     MORQUIL_RESULT(0x80040110u)
#define CLASS_E_CLASSNOTAVAILABLE MORQUIL_RESULT(0x80040111u)
/* clang-format on */

/* S_FALSE is a success: test results with these, not against S_OK. */
#define SUCCEEDED(result) (MORQUIL_RESULT(result) >= 0)
#define FAILED(result) (MORQUIL_RESULT(result) < 0)

/* ---- Text ------------------------------------------------------------------------------------------------------- */

/* One UTF-16 unit. */
typedef char16_t OLECHAR;
typedef OLECHAR* LPOLESTR;
typedef const OLECHAR* LPCOLESTR;
#define OLESTR(literal) u##literal

/*
 * Text that crosses an interface. Points at the first unit. The four bytes before it hold the length in bytes, without
 * the zero unit that always follows the text. The text may contain zero units. A null BSTR is an empty text.
 */
typedef OLECHAR* BSTR;

/* ---- Macros that the generated header uses ---------------------------------------------------------------------- */

#ifdef __cplusplus
#define EXTERN_C extern "C"
#else
#define EXTERN_C extern
#endif

#define interface struct
#define STDMETHODCALLTYPE
#define STDAPICALLTYPE
#define STDMETHODIMP HRESULT STDMETHODCALLTYPE
#define STDMETHODIMP_(type) type STDMETHODCALLTYPE
#define STDAPI EXTERN_C HRESULT STDAPICALLTYPE
#define STDAPI_(type) EXTERN_C type STDAPICALLTYPE
#ifdef __cplusplus
#define STDMETHOD(method) virtual HRESULT STDMETHODCALLTYPE method
#define STDMETHOD_(type, method) virtual type STDMETHODCALLTYPE method
#define PURE = 0
#endif
#define DECLSPEC_UUID(text)
#define DECLSPEC_NOVTABLE
#define MIDL_INTERFACE(text) struct
#define BEGIN_INTERFACE
#define END_INTERFACE
#define FORCEINLINE inline
#ifdef CONST_VTABLE
#define CONST_VTBL const
#else
#define CONST_VTBL
#endif

/* What the library exports; and a constant that a host need not use. */
#ifdef __GNUC__
#define MORQUIL_PUBLIC __attribute__((visibility("default")))
#define MORQUIL_UNUSED __attribute__((unused))
#else
#define MORQUIL_PUBLIC
#define MORQUIL_UNUSED
#endif

/* ---- Identifiers ------------------------------------------------------------------------------------------------ */

typedef struct GUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
} GUID;
typedef GUID IID;
typedef GUID CLSID;

#ifdef __cplusplus
#define REFGUID const GUID&
#define REFIID const IID&
#define REFCLSID const CLSID&
#define DEFINE_GUID(name, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8) \
    inline constexpr GUID name = {l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}}

inline bool IsEqualGUID(REFGUID a, REFGUID b) noexcept {
    return memcmp(&a, &b, sizeof(GUID)) == 0;
}
inline bool operator==(REFGUID a, REFGUID b) noexcept {
    return IsEqualGUID(a, b);
}
#if __cplusplus < 202002L
inline bool operator!=(REFGUID a, REFGUID b) noexcept {
    return !IsEqualGUID(a, b);
}
#endif
#else
#define REFGUID const GUID*
#define REFIID const IID*
#define REFCLSID const CLSID*
#define DEFINE_GUID(name, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8) \
    static const GUID name MORQUIL_UNUSED = {l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}}
#define IsEqualGUID(a, b) (memcmp((a), (b), sizeof(GUID)) == 0)
#endif
#define IsEqualIID(a, b) IsEqualGUID(a, b)
#define IsEqualCLSID(a, b) IsEqualGUID(a, b)

DEFINE_GUID(GUID_NULL, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
DEFINE_GUID(IID_IUnknown, 0x00000000, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);
DEFINE_GUID(IID_IClassFactory, 0x00000001, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);

/* ---- The two interfaces of COM itself --------------------------------------------------------------------------- */

typedef interface IUnknown IUnknown;
typedef interface IClassFactory IClassFactory;
typedef IUnknown* LPUNKNOWN;

#if defined(__cplusplus) && !defined(CINTERFACE)

#if defined(__GNUC__) || defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/*
 * The base of every interface: three virtual functions and nothing else. Deliberately no virtual destructor: it would
 * take slots that the binary contract assigns to methods. An object is destroyed by its last Release.
 */
interface IUnknown {
    /* Stores the interface in `*object` with a new reference, or null. Returns S_OK, E_NOINTERFACE when the object does
       not have it, or E_POINTER when `object` is null. */
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) = 0;
    /* Both return the new count. */
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
};

interface IClassFactory : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) = 0;
};

#if defined(__GNUC__) || defined(__clang__)
#pragma GCC diagnostic pop
#endif

#else

typedef struct IUnknownVtbl {
    HRESULT(STDMETHODCALLTYPE* QueryInterface)(IUnknown* This, REFIID iid, void** object);
    ULONG(STDMETHODCALLTYPE* AddRef)(IUnknown* This);
    ULONG(STDMETHODCALLTYPE* Release)(IUnknown* This);
} IUnknownVtbl;

interface IUnknown {
    CONST_VTBL IUnknownVtbl* lpVtbl;
};

typedef struct IClassFactoryVtbl {
    HRESULT(STDMETHODCALLTYPE* QueryInterface)(IClassFactory* This, REFIID iid, void** object);
    ULONG(STDMETHODCALLTYPE* AddRef)(IClassFactory* This);
    ULONG(STDMETHODCALLTYPE* Release)(IClassFactory* This);
    HRESULT(STDMETHODCALLTYPE* CreateInstance)(IClassFactory* This, IUnknown* outer, REFIID iid, void** object);
    HRESULT(STDMETHODCALLTYPE* LockServer)(IClassFactory* This, BOOL lock);
} IClassFactoryVtbl;

interface IClassFactory {
    CONST_VTBL IClassFactoryVtbl* lpVtbl;
};

#endif

/* ---- What the library exports, besides GetMorquilDiscoveryInstance_0000 (MorquilEntry.h) ------------------------ */

#ifdef __cplusplus
extern "C" {
#endif

/* A copy of the zero-terminated `text`. Null for a null `text` or when out of memory. Free with SysFreeString. */
MORQUIL_PUBLIC BSTR SysAllocString(const OLECHAR* text);

/* A text of `length` units, copied from `text` including zero units, and a terminating zero. For a null `text` the
   units are left uninitialised. Null when out of memory. */
MORQUIL_PUBLIC BSTR SysAllocStringLen(const OLECHAR* text, UINT length);

/* The length in UTF-16 units without the terminating zero; 0 for null. */
MORQUIL_PUBLIC UINT SysStringLen(BSTR text);

/* Null is ignored. */
MORQUIL_PUBLIC void SysFreeString(BSTR text);

/* Stores a class factory for CLSID_CMorquilDiscovery, the only class, in `*object`. CLASS_E_CLASSNOTAVAILABLE for any
   other class. `object` is written only on success. */
MORQUIL_PUBLIC HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object);

/* S_OK when no class factory exists, otherwise S_FALSE. Discovery and device objects are not counted. */
MORQUIL_PUBLIC HRESULT STDAPICALLTYPE DllCanUnloadNow(void);

#ifdef __cplusplus
}
#endif

/* ---- The binary contract, checked wherever this header is used -------------------------------------------------- */

#ifdef __cplusplus
static_assert(sizeof(HRESULT) == 4 && sizeof(LONG) == 4 && sizeof(ULONG) == 4 && sizeof(BOOL) == 4, "32-bit numbers");
static_assert(sizeof(OLECHAR) == 2 && sizeof(GUID) == 16 && alignof(GUID) == 4, "Windows' layout of text and GUIDs");
#ifndef CINTERFACE
static_assert(sizeof(IUnknown) == sizeof(void*), "an interface holds nothing but its table");
static_assert(!std::has_virtual_destructor<IUnknown>::value, "a destructor would take a slot");
#endif
#else
_Static_assert(sizeof(HRESULT) == 4 && sizeof(LONG) == 4 && sizeof(ULONG) == 4 && sizeof(BOOL) == 4, "32-bit numbers");
_Static_assert(sizeof(OLECHAR) == 2 && sizeof(GUID) == 16, "Windows' layout of text and GUIDs");
#endif

#endif /* MORQUIL_COM_H */
