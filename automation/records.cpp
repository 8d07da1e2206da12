// The records: a plain one as itself, or as an array of its fields; one that holds arrays always as
// an array of its fields, since few hosts can take such a record, and not every system can copy and
// clear it.
#include "marshal.h"
#include "tessaro_com.h"
#include "type_library.h"

namespace tessaro::automation {
namespace {

/// A new record as a variant, its fields zero, and where they lie.
template <class Record>
std::pair<Variant, Record*> NewRecord(const wchar_t* name) {
    Reference<IRecordInfo> info = RecordInfo(name);
    auto* record = static_cast<Record*>(info->RecordCreate());
    if (!record)
        throw Refusal{E_OUTOFMEMORY};
    Variant variant;
    variant->vt = VT_RECORD;
    variant->pvRecord = record;
    variant->pRecInfo = info.Get();
    variant->pRecInfo->AddRef();
    return {std::move(variant), record};
}

Variant ArrayOfFields(std::vector<Variant> fields) {
    Variant variant;
    variant->parray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(fields.size()));
    if (!variant->parray)
        throw Refusal{E_OUTOFMEMORY};
    variant->vt = VT_ARRAY | VT_VARIANT;
    auto* element = static_cast<VARIANT*>(variant->parray->pvData);
    for (Variant& field : fields)
        *element++ = field.Release();
    return variant;
}

Variant Field(std::int16_t number) {
    Variant variant;
    variant->vt = VT_I2;
    variant->iVal = number;
    return variant;
}

template <class T, std::size_t N>
std::vector<T> ToVector(const std::array<T, N>& values) {
    return {values.begin(), values.end()};
}

}  // namespace

bool IsSpriteHead(IRecordInfo* record) {
    return record && record->IsMatchingType(RecordInfo(L"typSpriteHead").Get());
}

Variant ToVariant(const typSpriteHead& head, bool asVariants) {
    const std::vector<std::int16_t> fields = {head.Width, head.Height, head.OrgX,
                                              head.OrgY,  head.Rx1,    head.Ry1,
                                              head.Rx2,   head.Ry2,    head.Shifts};
    if (asVariants)
        return ToVariant(fields, true);
    auto [variant, record] = NewRecord<::typSpriteHead>(L"typSpriteHead");
    *record = {fields[0], fields[1], fields[2], fields[3], fields[4],
               fields[5], fields[6], fields[7], fields[8]};
    return std::move(variant);
}

Variant ToVariant(const typFont& font, bool asVariants) {
    std::vector<Variant> characters;
    for (const typChar& character : font.Chars)
        characters.push_back(ToVariant(character.Points, asVariants));
    std::vector<Variant> fields;
    fields.push_back(Field(font.Height));
    fields.push_back(ToVariant(ToVector(font.Offsets), asVariants));
    fields.push_back(ToVariant(ToVector(font.Widths), asVariants));
    fields.push_back(ArrayOfFields(std::move(characters)));
    return ArrayOfFields(std::move(fields));
}

}  // namespace tessaro::automation
