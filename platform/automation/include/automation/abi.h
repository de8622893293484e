/* The binary interface between modules, for C and C++.
 *
 * Everything that crosses a module boundary is declared here: fixed-size numbers, counted UTF-16 texts,
 * variants, identities, and objects whose first word points to a table of functions. Nothing is thrown across
 * it. A function or a member answers a status; a failing one may leave its source, number and description in
 * the calling thread's error object.
 *
 * Ownership: what a function gives out belongs to the caller, who frees texts with Automation_Free, clears
 * variants with Automation_Clear and releases objects. What it is given stays the caller's. Every function
 * may be called from every thread; a variant and an object's members belong to one thread at a time.
 *
 * AUTOMATION_VERSION names this interface. The identity of Automation_Class_Object changes with it, so that a
 * module of another version is refused, at its registration and before an object of it is made. */
#ifndef STYLE_NODE_AUTOMATION_ABI_H
#define STYLE_NODE_AUTOMATION_ABI_H

#include <stdint.h>
#ifdef __cplusplus
#define AUTOMATION_C extern "C"
#define AUTOMATION_NOEXCEPT noexcept
#else
#include <uchar.h>
#define AUTOMATION_C extern
#define AUTOMATION_NOEXCEPT
#endif

#define AUTOMATION_VERSION 1
#define AUTOMATION_EXPORT __attribute__((visibility("default")))
#define AUTOMATION_API(Result) AUTOMATION_C AUTOMATION_EXPORT Result

/* ---- Statuses: negative is failure ---- */

typedef int32_t Automation_Status;
#define AUTOMATION_OK 0
#define AUTOMATION_NO 1                       /* success, and the answer is no */
#define AUTOMATION_UNSPECIFIED (-2147467259)  /* 0x80004005 */
#define AUTOMATION_NO_INTERFACE (-2147467262) /* 0x80004002 */
#define AUTOMATION_WRONG_THREAD (-2147417842) /* 0x8001010E: the object belongs to another thread */
#define AUTOMATION_NO_CLASS (-2147221231)     /* 0x80040111: the module does not have the class */
/* The status of a run-time failure, by its number (1 to 65535); and the number behind such a status. */
#define AUTOMATION_RUN_TIME(Number) (-2146828288 + (Number)) /* 0x800A0000 + Number */
#define AUTOMATION_IS_RUN_TIME(Status) ((Status) > -2146828288 && (Status) < -2146762752)
#define AUTOMATION_RUN_TIME_NUMBER(Status) ((Status) + 2146828288)

/* ---- Values ---- */

/* 128 bits, written {A-B-C-D}. */
typedef struct Automation_Identity {
    uint32_t A;
    uint16_t B;
    uint16_t C;
    uint8_t D[8];
} Automation_Identity;

/* A counted text or byte array: Length code units or bytes follow. Null is the empty one. */
typedef struct Automation_Block {
    uint32_t Length;
} Automation_Block;

typedef int16_t Automation_Boolean; /* -1 True, 0 False */
#define AUTOMATION_TRUE (-1)
#define AUTOMATION_FALSE 0

enum {
    Automation_Empty = 0,
    Automation_Null = 1,
    Automation_Integer = 2, /* 16 bits */
    Automation_Long = 3,    /* 32 bits */
    Automation_Single = 4,
    Automation_Double = 5,
    Automation_Currency = 6, /* units of 1/10000 */
    Automation_Date = 7,     /* days since 1899-12-30, the time of day as the fraction */
    Automation_Text = 8,
    Automation_Object = 9,
    Automation_Missing = 10, /* in a late-bound call: an optional argument that is left out */
    Automation_Truth = 11,   /* Boolean */
    Automation_Byte = 17,
    Automation_Long_Long = 20,
    Automation_Byte_Array = 0x2011,
    Automation_By_Reference = 0x4000 /* added to a type: As_Reference points to the caller's value */
};

#ifdef __cplusplus
namespace automation {
class Unknown;
}
typedef automation::Unknown Automation_Unknown;
#else
typedef struct Automation_Unknown Automation_Unknown;
#endif

typedef struct Automation_Variant {
    uint16_t Type;
    uint16_t Reserved[3];
    union {
        int16_t As_Integer; /* also Boolean */
        int32_t As_Long;
        int64_t As_Long_Long; /* also Currency */
        float As_Single;
        double As_Double; /* also Date */
        uint8_t As_Byte;
        Automation_Block* As_Block; /* Text, Byte_Array */
        Automation_Unknown* As_Object;
        void* As_Reference;
    };
} Automation_Variant;

/* The three texts and the number of a failure. Number 0: the status says it. Reason explains to a person
 * what the description leaves open, such as which file is at fault; it may be null. */
typedef struct Automation_Error {
    Automation_Block* Source;
    Automation_Block* Description;
    Automation_Block* Reason;
    int32_t Number;
} Automation_Error;

/* ---- Texts and variants ---- */

/* Null for an empty text, and when memory is exhausted. */
AUTOMATION_API(Automation_Block*)
Automation_New_Text(const char16_t* units, uint32_t length) AUTOMATION_NOEXCEPT;
AUTOMATION_API(Automation_Block*)
Automation_New_Bytes(const void* bytes, uint32_t length) AUTOMATION_NOEXCEPT;
/* `utf8` ends with a zero; what is not well-formed becomes U+FFFD. */
AUTOMATION_API(Automation_Block*) Automation_New_Text_UTF8(const char* utf8) AUTOMATION_NOEXCEPT;
/* Writes the text and a zero into `buffer`, cut to `size` bytes; answers the bytes that the whole takes,
 * without the zero. A lone surrogate becomes U+FFFD. `buffer` may be null when `size` is 0. */
AUTOMATION_API(uint32_t)
Automation_To_UTF8(const Automation_Block* text, char* buffer, uint32_t size) AUTOMATION_NOEXCEPT;
AUTOMATION_API(void) Automation_Free(Automation_Block* block) AUTOMATION_NOEXCEPT;

/* Frees what the variant holds and makes it Empty. */
AUTOMATION_API(void) Automation_Clear(Automation_Variant* variant) AUTOMATION_NOEXCEPT;
/* `to` is overwritten, not cleared. Run-time 7. */
AUTOMATION_API(Automation_Status)
Automation_Copy(Automation_Variant* to, const Automation_Variant* from) AUTOMATION_NOEXCEPT;
/* Converts to Integer, Long, Double, Text or Boolean by the platform's rules and overwrites `to`. Follows
 * By_Reference. Run-time 94, 13, 6, 7, and 5 for a null reference; the error object is empty then. */
AUTOMATION_API(Automation_Status)
Automation_Convert(Automation_Variant* to, const Automation_Variant* from, uint16_t type) AUTOMATION_NOEXCEPT;

/* ---- The calling thread's error object ---- */

/* Takes the three texts over and leaves nulls. */
AUTOMATION_API(void) Automation_Set_Error(Automation_Error* error) AUTOMATION_NOEXCEPT;
/* Gives it out and empties it; 0, and an empty `error`, when there is none. Free its three texts. */
AUTOMATION_API(int32_t) Automation_Take_Error(Automation_Error* error) AUTOMATION_NOEXCEPT;
/* The number of the calling thread. No other thread of the process ever has it, unlike the system's
 * identifiers. */
AUTOMATION_API(uint64_t) Automation_This_Thread(void) AUTOMATION_NOEXCEPT;
/* The platform's text of a run-time number. */
AUTOMATION_API(Automation_Block*) Automation_Describe(int32_t number) AUTOMATION_NOEXCEPT;

/* ---- Classes ----
 *
 * A class is found by its programmatic identifier, without regard to case, or by its class identity: first
 * among those that the process provides itself, then among the user's registered ones, then among the
 * machine's, last among those that a host offers. 429 when it cannot be created (the error's Reason says
 * why), 430 when the object does not have the interface. */

AUTOMATION_API(Automation_Status)
Automation_Create(const char16_t* program_identity, uint32_t length,
                  const Automation_Identity* interface_identity, void** object) AUTOMATION_NOEXCEPT;
AUTOMATION_API(Automation_Status)
Automation_Create_By_Identity(const Automation_Identity* class_identity,
                              const Automation_Identity* interface_identity,
                              void** object) AUTOMATION_NOEXCEPT;
/* Unloads the modules that said yes to DllCanUnloadNow at an earlier call, a second ago or more, say so now,
 * and have not been used in between: a thread may still be on its way out of the last object's Release.
 * Answers how many are still loaded. */
AUTOMATION_API(int32_t) Automation_Free_Unused_Modules(void) AUTOMATION_NOEXCEPT;

/* What a module says about one of its classes from DllRegisterServer. */
typedef struct Automation_Registration {
    const char16_t* Program_Identity; /* ends with a zero */
    Automation_Identity Class_Identity;
    const char16_t* Threading_Model; /* "Apartment", "Both" or "Free"; ends with a zero */
    const void* Address;             /* anything in the module: says which file it is */
} Automation_Registration;

/* Tell the registering command, or go to the module's manifest in the user's folder. Run-time 75 with a
 * Reason. */
AUTOMATION_API(Automation_Status)
Automation_Register(const Automation_Registration* registration) AUTOMATION_NOEXCEPT;
AUTOMATION_API(Automation_Status)
Automation_Unregister(const Automation_Registration* registration) AUTOMATION_NOEXCEPT;

/* The four entry points that every module has:
 *   Automation_Status DllRegisterServer(void);
 *   Automation_Status DllUnregisterServer(void);
 *   Automation_Status DllGetClassObject(const Automation_Identity* class_identity,
 *                                       const Automation_Identity* interface_identity, void** object);
 *   Automation_Status DllCanUnloadNow(void);   AUTOMATION_OK yes, AUTOMATION_NO no */

#endif
