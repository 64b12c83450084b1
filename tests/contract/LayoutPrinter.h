#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// Prints the binary layout of plain records (size, alignment, every field's offset) and of
// abstract interfaces (every operation's virtual-table slot) as text, one item per line, so that
// two layouts compare as text. It also proves that each list it is given is complete: a record
// with a field the list does not name, or an interface with slots no listed operation explains,
// is reported as an error, because such a field or operation could change the layout without
// changing the text.

namespace kv::test {

#if !defined(__x86_64__) || defined(_MSC_VER)
#error "Virtual-table slots are read as the Itanium C++ ABI lays out member pointers on x86-64"
#endif

struct FieldLayout {
    std::string name;
    std::size_t offset = 0;
    std::size_t size = 0;
    std::string kind;
};

// An operation's slot (none when it is not virtual). A member pointer cannot name a destructor,
// so a virtual destructor's slots are the ones after the operation listed before it.
struct OperationSlot {
    std::string name;
    std::optional<std::size_t> slot;
    bool destructor = false;
};

// What a field holds, in words that are the same for every compiler of the ABI.
template <class T>
std::string kindOf() {
    if constexpr (std::is_array_v<T>) {
        return kindOf<std::remove_extent_t<T>>() + "[" + std::to_string(std::extent_v<T>) + "]";
    } else if constexpr (std::is_pointer_v<T>) {
        return "pointer";
    } else if constexpr (std::is_same_v<T, bool>) {
        return "bool";
    } else if constexpr (std::is_same_v<T, char>) {
        return "char";
    } else if constexpr (std::is_integral_v<T>) {
        return (std::is_signed_v<T> ? "int" : "uint") + std::to_string(8 * sizeof(T));
    } else if constexpr (std::is_floating_point_v<T>) {
        return "float" + std::to_string(8 * sizeof(T));
    } else {
        return "record";
    }
}

// Stands for a value of any type where the compiler only checks that an initialiser is valid.
struct AnyValue {
    template <class T>
    operator T() const;
};

template <class Record, class... Values>
concept bracedFrom = requires(Values... values) {
    Record{{values}...};
};

// The number of fields of a plain record: brace-initialising it from one more braced value than
// it has fields does not compile. Each value sits in braces of its own, so an array field takes
// one value as any other field does.
template <class Record, class... Values>
constexpr std::size_t fieldCountOf() {
    if constexpr (bracedFrom<Record, AnyValue, Values...>) {
        return fieldCountOf<Record, AnyValue, Values...>();
    } else {
        return sizeof...(Values);
    }
}

template <class Member>
FieldLayout fieldOf(std::string_view name, std::size_t offset) {
    return {std::string(name), offset, sizeof(Member), kindOf<Member>()};
}

// On the Itanium ABI a pointer to a virtual member function holds 1 + the byte offset of its
// virtual-table entry, and a pointer to a non-virtual one the (even) function address.
template <class MemberFunction>
std::optional<std::size_t> virtualSlotOf(MemberFunction function) {
    static_assert(std::is_member_function_pointer_v<MemberFunction>);
    struct Representation {
        std::uintptr_t pointer;
        std::ptrdiff_t adjustment;
    };
    static_assert(sizeof(MemberFunction) == sizeof(Representation));
    const auto representation = std::bit_cast<Representation>(function);
    if ((representation.pointer & 1U) == 0 || representation.adjustment != 0) {
        return std::nullopt;
    }
    return (representation.pointer - 1) / sizeof(void*);
}

template <class MemberFunction>
OperationSlot operationOf(std::string_view name, MemberFunction function) {
    return {std::string(name), virtualSlotOf(function)};
}

inline OperationSlot virtualDestructor(std::string_view name) {
    return {std::string(name), std::nullopt, true};
}

// The first slot after an interface's own: the slot of an operation a class derived from it
// adds.
template <class Interface>
struct SlotProbe : Interface {
    virtual void kvSlotProbe() = 0;
};

template <class Interface>
std::size_t slotCountOf() {
    return *virtualSlotOf(&SlotProbe<Interface>::kvSlotProbe);
}

class LayoutPrinter {
public:
    explicit LayoutPrinter(std::ostream& out) : m_out(out) {}

    template <class Record>
    void record(std::string_view name, const std::vector<FieldLayout>& fields) {
        static_assert(std::is_standard_layout_v<Record>, "offsets need a standard-layout record");
        static_assert(std::is_aggregate_v<Record>, "fields are counted in a plain record");
        printRecord(name, sizeof(Record), alignof(Record), fieldCountOf<Record>(), fields);
    }

    // `Base` is the interface this one extends, whose slots come first; void for none.
    template <class Interface, class Base = void>
    void interface(std::string_view name, std::string_view baseName,
                   const std::vector<OperationSlot>& operations) {
        static_assert(std::is_abstract_v<Interface> && std::is_polymorphic_v<Interface>);
        std::size_t first = 0;
        if constexpr (!std::is_void_v<Base>) {
            static_assert(std::is_base_of_v<Base, Interface>);
            first = slotCountOf<Base>();
        }
        printInterface(name, baseName, sizeof(Interface), first, slotCountOf<Interface>(),
                       operations);
    }

    // The problems found so far, one a line; empty when every list was complete.
    const std::vector<std::string>& errors() const { return m_errors; }

private:
    void printRecord(std::string_view name, std::size_t size, std::size_t align,
                     std::size_t fieldCount, const std::vector<FieldLayout>& fields);
    void printInterface(std::string_view name, std::string_view baseName, std::size_t size,
                        std::size_t first, std::size_t end,
                        const std::vector<OperationSlot>& operations);
    void fail(std::string_view type, const std::string& problem);

    std::ostream& m_out;
    std::vector<std::string> m_errors;
};

}  // namespace kv::test

// The field list of a record, in declaration order.
#define KV_FIELD(Record, member) \
    kv::test::fieldOf<decltype(Record::member)>(#member, offsetof(Record, member))

// The operations of an interface, in declaration order.
#define KV_OPERATION(Interface, operation) kv::test::operationOf(#operation, &Interface::operation)
#define KV_OVERLOAD(Interface, Result, operation, ...)     \
    kv::test::operationOf(#operation "(" #__VA_ARGS__ ")", \
                          static_cast<Result (Interface::*)(__VA_ARGS__)>(&Interface::operation))
#define KV_VIRTUAL_DESTRUCTOR(Interface) kv::test::virtualDestructor("~" #Interface)

// KV_EACH(MACRO, Type, a, b, ...) is MACRO(Type, a), MACRO(Type, b), ...: each rescan of
// KV_EXPAND takes one more name, up to 64, so that a list names its type once.
#define KV_EXPAND(...) KV_EXPAND16(KV_EXPAND16(KV_EXPAND16(KV_EXPAND16(__VA_ARGS__))))
#define KV_EXPAND16(...) KV_EXPAND4(KV_EXPAND4(KV_EXPAND4(KV_EXPAND4(__VA_ARGS__))))
#define KV_EXPAND4(...) KV_EXPAND1(KV_EXPAND1(KV_EXPAND1(KV_EXPAND1(__VA_ARGS__))))
#define KV_EXPAND1(...) __VA_ARGS__
#define KV_EACH(macro, type, ...) __VA_OPT__(KV_EXPAND(KV_EACH_STEP(macro, type, __VA_ARGS__)))
#define KV_EACH_STEP(macro, type, first, ...) \
    macro(type, first) __VA_OPT__(, KV_EACH_AGAIN KV_PARENS(macro, type, __VA_ARGS__))
#define KV_EACH_AGAIN() KV_EACH_STEP
#define KV_PARENS ()

#define KV_FIELDS(Record, ...) KV_EACH(KV_FIELD, Record, __VA_ARGS__)
#define KV_OPERATIONS(Interface, ...) KV_EACH(KV_OPERATION, Interface, __VA_ARGS__)
