// The accessors of properties, which differ in nothing but name and type. The name stands in them
// three times as part of another, which is what a macro is for.
#pragma once

#define READ_PROPERTY(Library, Type, Name)          \
    STDMETHODIMP get_##Name(Type* value) override { \
        return Forward(value, &Library::Name);      \
    }

#define WRITE_PROPERTY(Library, Type, Name)        \
    STDMETHODIMP put_##Name(Type value) override { \
        return Forward(&Library::Name, value);     \
    }

#define PROPERTY(Library, Type, Name)  \
    READ_PROPERTY(Library, Type, Name) \
    WRITE_PROPERTY(Library, Type, Name)

/// Properties of the item `index`.
#define READ_ITEM_PROPERTY(Library, Type, Name)                 \
    STDMETHODIMP get_##Name(LONG index, Type* value) override { \
        return Forward(value, &Library::Name, index);           \
    }

#define ITEM_PROPERTY(Library, Type, Name)                     \
    READ_ITEM_PROPERTY(Library, Type, Name)                    \
    STDMETHODIMP put_##Name(LONG index, Type value) override { \
        return Forward(&Library::Name, index, value);          \
    }
