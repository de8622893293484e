/* How an interface is declared once for C and C++, and late binding.
 *
 * In C++ an interface is an abstract class over automation::Unknown; in C it is a struct whose first word
 * points to its members, each of which takes the object first:
 *     editor->Members->Get_ErrCode(editor, &code)
 * Its identity names its exact members and their order. While the members are listed, AUTOMATION_SELF is the
 * interface's name. */
#ifndef STYLE_NODE_AUTOMATION_INTERFACE_H
#define STYLE_NODE_AUTOMATION_INTERFACE_H

#include "automation/abi.h"

#ifdef __cplusplus

#include "automation/variant.h"

typedef const automation::Variant& Automation_In;
typedef automation::Variant& Automation_Out;
typedef automation::Text& Automation_Text_Out;
typedef int32_t& Automation_Long_Out;
typedef Automation_Boolean& Automation_Boolean_Reference;

#define AUTOMATION_BEGIN(Name, Base, ...)                                                                    \
    class Name : public Base {                                                                               \
    public:                                                                                                  \
        static constexpr ::automation::Identity Interface_Identity{__VA_ARGS__};
#define AUTOMATION_MEMBER(Name, ...) virtual Automation_Status Name(__VA_ARGS__) = 0;
#define AUTOMATION_END(Name)                                                                                 \
protected:                                                                                                   \
    ~Name() = default;                                                                                       \
    }                                                                                                        \
    ;

#else

typedef const Automation_Variant* Automation_In;
typedef Automation_Variant* Automation_Out;
typedef Automation_Block** Automation_Text_Out;
typedef int32_t* Automation_Long_Out;
typedef Automation_Boolean* Automation_Boolean_Reference;

/* The second macro sees the name that the first one is given as another macro. */
#define AUTOMATION_BEGIN(Name, Base, ...) AUTOMATION_BEGIN_C(Name, Base, __VA_ARGS__)
#define AUTOMATION_BEGIN_C(Name, Base, ...)                                                                  \
    typedef struct Name Name;                                                                                \
    static const Automation_Identity Name##_Identity = {__VA_ARGS__};                                        \
    struct Name##_Members {                                                                                  \
        MEMBERS_OF_##Base
#define AUTOMATION_MEMBER(Name, ...) Automation_Status (*Name)(AUTOMATION_SELF*, __VA_ARGS__);
#define AUTOMATION_END(Name) AUTOMATION_END_C(Name)
#define AUTOMATION_END_C(Name)                                                                               \
    }                                                                                                        \
    ;                                                                                                        \
    struct Name {                                                                                            \
        const struct Name##_Members* Members;                                                                \
    };

/* Every object. Query_Interface: on success `object` holds a counted pointer, else null. */
#define MEMBERS_OF_Automation_Unknown                                                                        \
    AUTOMATION_MEMBER(Query_Interface, const Automation_Identity* wanted, void** object)                     \
    uint32_t (*Add_Reference)(AUTOMATION_SELF*);                                                             \
    uint32_t (*Release)(AUTOMATION_SELF*);
#define MEMBERS_OF_Automation_Dispatch MEMBERS_OF_Automation_Unknown OWN_MEMBERS_OF_Automation_Dispatch

static const Automation_Identity Automation_Unknown_Identity = {0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
#define AUTOMATION_SELF Automation_Unknown
struct Automation_Unknown_Members {
    MEMBERS_OF_Automation_Unknown
};
#undef AUTOMATION_SELF
struct Automation_Unknown {
    const struct Automation_Unknown_Members* Members;
};

#endif

/* ---- Late binding ---- */

typedef struct Automation_Name {
    const char16_t* Units;
    uint32_t Length;
} Automation_Name;

/* `Values` holds the positional arguments in their order, then the named ones, whose identities stand in
 * `Named`. A property is written with one argument. */
typedef struct Automation_Arguments {
    Automation_Variant* Values;
    const int32_t* Named;
    uint32_t Count; /* of Values */
    uint32_t Named_Count;
} Automation_Arguments;

#define AUTOMATION_METHOD 1
#define AUTOMATION_PROPERTY_GET 2
#define AUTOMATION_PROPERTY_PUT 4

/* An object whose members can be called by name. Names are compared without regard to case.
 *
 * Get_Member_Identities: names[0] is a member, the others are its arguments: 438, 448.
 * Invoke: `result` is overwritten and may be null; `wrong_argument`, which may be null, gets the position in
 * Values of the argument that a failure is about. 438 no such member, or not of that kind; 448 no such named
 * argument; 449 an argument that is not optional is missing; 450 too many arguments; 13, 6 and 94 for a value
 * that does not convert. Arguments by reference are written back. */
#define OWN_MEMBERS_OF_Automation_Dispatch                                                                   \
    AUTOMATION_MEMBER(Get_Member_Identities, const Automation_Name* names, uint32_t count,                   \
                      int32_t* identities)                                                                   \
    AUTOMATION_MEMBER(Invoke, int32_t member, uint16_t kind, const Automation_Arguments* arguments,          \
                      Automation_Variant* result, uint32_t* wrong_argument)

#define AUTOMATION_SELF Automation_Dispatch
AUTOMATION_BEGIN(Automation_Dispatch, Automation_Unknown, 0x4F2B7A90, 0x2C1D, 0x4E0A,
                 {0x9B, 0x63, 0x58, 0x1E, 0xD7, 0x40, 0xA2, 0x15})
OWN_MEMBERS_OF_Automation_Dispatch AUTOMATION_END(Automation_Dispatch)
#undef AUTOMATION_SELF

/* What DllGetClassObject gives: it makes the objects of one class. The identity stands for
 * AUTOMATION_VERSION. */
#define AUTOMATION_SELF Automation_Class_Object
    AUTOMATION_BEGIN(Automation_Class_Object, Automation_Unknown, 0x1D8E53C7, 0x6A0F, 0x4B92,
                     {0x80, 0x3A, 0xF5, 0x27, 0xC6, 0x9E, 0x11, AUTOMATION_VERSION})
        AUTOMATION_MEMBER(Create_Instance, const Automation_Identity* interface_identity, void** object)
            AUTOMATION_MEMBER(Lock, Automation_Boolean locked) /* a locked module stays loaded */
    AUTOMATION_END(Automation_Class_Object)
#undef AUTOMATION_SELF

#endif
