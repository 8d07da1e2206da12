#include "pagefile/searchable_pool.h"

#include <algorithm>
#include <cstring>

namespace tessaro {

std::size_t SearchablePool::Key(const std::uint8_t* bytes) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes, kKeySize);
    return (word * 2654435761u) >> (32 - kKeyBits);
}

std::size_t SearchablePool::Find(ByteSpan run) const {
    if (run.size() < kKeySize) {
        const auto found = std::search(bytes_.begin(), bytes_.end(), run.begin(), run.end());
        return found == bytes_.end() ? kNone : static_cast<std::size_t>(found - bytes_.begin());
    }
    // The key of the run that begins at the fewest positions leaves the fewest candidates.
    std::size_t rarest = 0;
    std::size_t rarestCount = kNone;
    for (std::size_t k = 0; k + kKeySize <= run.size(); ++k) {
        const std::size_t count = count_[Key(run.data() + k)];
        if (count == 0)
            return kNone;
        if (count < rarestCount) {
            rarest = k;
            rarestCount = count;
        }
    }
    for (std::size_t i = first_[Key(run.data() + rarest)]; i != kNone; i = next_[i]) {
        if (i < rarest || run.size() > bytes_.size() - (i - rarest))
            continue;
        if (std::memcmp(bytes_.data() + (i - rarest), run.data(), run.size()) == 0)
            return i - rarest;
    }
    return kNone;
}

std::size_t SearchablePool::Append(ByteSpan run) {
    const std::size_t at = bytes_.size();
    bytes_.insert(bytes_.end(), run.begin(), run.end());
    next_.resize(bytes_.size(), kNone);
    // A key that begins among the last bytes stored before is complete only now.
    for (std::size_t i = at < kKeySize ? 0 : at - (kKeySize - 1); i + kKeySize <= bytes_.size();
         ++i) {
        const std::size_t key = Key(bytes_.data() + i);
        (count_[key]++ == 0 ? first_[key] : next_[last_[key]]) = i;
        last_[key] = i;
    }
    return at;
}

}  // namespace tessaro
