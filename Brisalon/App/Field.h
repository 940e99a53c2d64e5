#pragma once

// A field of a model object on one line: what it holds, the getter of its name, and the
// signal nameChanged(), which the class sends after it has stored another value. A field
// begins empty, or as the constructor says.
//
//     BRISALON_FIELD(bool, isScanning);                    a property that QML reads
//     BRISALON_WRITABLE_FIELD(bool, isOpen, setOpen);      and writes, by the class's setter
//     BRISALON_INNER_FIELD(std::set<int>, rows);           for C++ alone
//
// QML knows types by their full names: brisalon::FileURL.

namespace brisalon {

/// What a field of T stores, and what its getter gives; a type that is to be kept in
/// another form than it is read in specialises it.
template <typename T>
struct FieldOf {
    using Stored = T;
    using Read = const T&;
};

} // namespace brisalon

// clang-format off
#define BRISALON_INNER_FIELD(Type, name)                                                           \
public:                                                                                            \
    brisalon::FieldOf<Type>::Read name() const { return name##_; }                                 \
    Q_SIGNAL void name##Changed();                                                                 \
private:                                                                                           \
    brisalon::FieldOf<Type>::Stored name##_{}

#define BRISALON_FIELD(Type, name)                                                                 \
    Q_PROPERTY(Type name READ name NOTIFY name##Changed)                                           \
    BRISALON_INNER_FIELD(Type, name)

#define BRISALON_WRITABLE_FIELD(Type, name, setName)                                               \
    Q_PROPERTY(Type name READ name WRITE setName NOTIFY name##Changed)                             \
    BRISALON_INNER_FIELD(Type, name)
// clang-format on
