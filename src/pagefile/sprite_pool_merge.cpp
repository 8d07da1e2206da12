#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "pagefile/searchable_pool.h"
#include "pagefile/sprite_chunk.h"
#include "pagefile/sprite_pools.h"

namespace tessaro {
namespace {

constexpr std::size_t kNone = SearchablePool::kNone;

std::string_view AsText(ByteSpan bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The runs that stand in no other, longest first; of equal ones the first.
std::vector<ByteSpan> WithoutContained(SpriteRuns runs) {
    std::vector<ByteSpan> byLength(runs.begin(), runs.end());
    std::ranges::stable_sort(byLength, std::greater{}, &ByteSpan::size);
    SearchablePool longer(0);
    std::vector<ByteSpan> kept;
    for (const ByteSpan run : byLength) {
        if (longer.Find(run) != kNone)
            continue;
        kept.push_back(run);
        longer.Append(run);
        longer.Append({&kTransparent, 1});  // in no run: no match reaches from one into the next
    }
    return kept;
}

/// The runs on their way into chains, in each of which a run overlaps the one before.
class Chains {
public:
    explicit Chains(SpriteRuns runs) : runs_(runs), links_(runs.size()) {
        for (std::size_t i = 0; i < runs.size(); ++i)
            links_[i].head = links_[i].tail = i;
    }

    /// Joins every two chains of which the one ends with the `overlap` bytes that the other begins
    /// with.
    void Join(std::size_t overlap) {
        std::unordered_map<std::string_view, std::vector<std::size_t>> heads;
        for (std::size_t i = 0; i < runs_.size(); ++i)
            if (links_[i].isHead && runs_[i].size() > overlap)
                heads[AsText(runs_[i].first(overlap))].push_back(i);
        for (std::size_t a = 0; a < runs_.size(); ++a) {
            if (links_[a].next != kNone || runs_[a].size() <= overlap)
                continue;
            const auto same = heads.find(AsText(runs_[a].last(overlap)));
            if (same == heads.end())
                continue;
            const auto b = std::ranges::find_if(same->second, [&](std::size_t head) {
                return links_[head].isHead && head != links_[a].head;  // never into a ring
            });
            if (b != same->second.end())
                Link(a, *b, overlap);
        }
    }

    ByteArray Text() const {
        ByteArray text;
        for (std::size_t head = 0; head < runs_.size(); ++head) {
            if (!links_[head].isHead)
                continue;
            std::size_t overlap = 0;
            for (std::size_t i = head; i != kNone; i = links_[i].next) {
                const ByteSpan added = runs_[i].subspan(overlap);
                text.insert(text.end(), added.begin(), added.end());
                overlap = links_[i].overlap;
            }
        }
        return text;
    }

private:
    struct Ends {
        std::size_t head, tail;    ///< of a chain, true at its tail and at its head
        std::size_t next = kNone;  ///< the run that follows
        std::size_t overlap = 0;   ///< with it
        bool isHead = true;
    };

    void Link(std::size_t a, std::size_t b, std::size_t overlap) {
        links_[a].next = b;
        links_[a].overlap = overlap;
        links_[b].isHead = false;
        const std::size_t head = links_[a].head;
        const std::size_t tail = links_[b].tail;
        links_[tail].head = head;
        links_[head].tail = tail;
    }

    SpriteRuns runs_;
    std::vector<Ends> links_;
};

/// The longest overlap of all goes first, equal ones in the order of the runs.
ByteArray MergedText(SpriteRuns runs) {
    Chains chains(runs);
    std::size_t longest = 0;
    for (const ByteSpan run : runs)
        longest = std::max(longest, run.size());
    for (std::size_t overlap = longest; overlap-- > 1;)
        chains.Join(overlap);
    return chains.Text();
}

}  // namespace

SpritePool PoolMerged(SpriteRuns runs) {
    std::vector<ByteSpan> kept = WithoutContained(runs);
    ByteArray merged = MergedText(kept);
    // Among equal overlaps the choice matters; the other end is as good a guess as the first.
    std::ranges::reverse(kept);
    if (ByteArray other = MergedText(kept); other.size() < merged.size())
        merged = std::move(other);

    SpritePool reused = PoolReused(runs);
    if (reused.bytes.size() < merged.size())
        return reused;
    SearchablePool stored(merged.size());
    stored.Append(merged);
    SpritePool pool;
    for (const ByteSpan run : runs)
        pool.offsets.push_back(stored.Find(run));
    pool.bytes = std::move(merged);
    return pool;
}

}  // namespace tessaro
