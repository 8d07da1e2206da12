// Its plain form: bench/literal/pagefile_literal.h, which the tests hold it against.
#include <algorithm>
#include <bitset>
#include <cstdint>
#include <vector>

#include "pagefile/searchable_pool.h"
#include "pagefile/sprite_chunk.h"
#include "pagefile/sprite_pools.h"

namespace tessaro {
namespace {

constexpr std::size_t kNone = SearchablePool::kNone;

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

/// The runs on their way into chains, in each of which a run overlaps the one before. They come
/// sorted by length, up or down.
class Chains {
public:
    explicit Chains(SpriteRuns runs)
        : runs_(runs),
          links_(runs.size()),
          descends_(runs.empty() || runs.front().size() >= runs.back().size()),
          begin_(descends_ ? 0 : runs.size()),
          end_(descends_ ? 0 : runs.size()) {
        for (std::size_t i = 0; i < runs.size(); ++i) {
            links_[i].head = links_[i].tail = i;
            links_[i].hashesAt = beginHashes_.size();
            AddHashes(runs[i]);
        }
    }

    /// Joins every two chains of which the one ends with the `overlap` bytes that the other begins
    /// with. The overlaps come from the longest down.
    void Join(std::size_t overlap) {
        while (descends_ && end_ < runs_.size() && runs_[end_].size() > overlap)
            ++end_;
        while (!descends_ && begin_ > 0 && runs_[begin_ - 1].size() > overlap)
            --begin_;
        std::bitset<kFilterBits> begins;  // of the hashes that heads begin with
        for (std::size_t i = begin_; i < end_; ++i)
            if (links_[i].isHead)
                begins.set(BeginHash(i, overlap) % kFilterBits);
        for (std::size_t a = begin_; a < end_; ++a) {
            if (links_[a].next != kNone)
                continue;
            const std::uint32_t hash = endHashes_[links_[a].hashesAt + overlap - 1];
            if (begins[hash % kFilterBits])
                LinkToFirst(a, hash, overlap);
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
        std::size_t hashesAt = 0;  ///< of the run
    };
    static constexpr std::size_t kFilterBits = 1024;

    /// Of the first and of the last 1, 2, 3 ... bytes of a run, the same for the same bytes.
    void AddHashes(ByteSpan run) {
        constexpr std::uint32_t kBase = 0x0100'0193;
        std::uint32_t begin = 0, end = 0, power = 1;
        for (std::size_t i = 0; i < run.size(); ++i) {
            begin = begin * kBase + run[i];
            end += power * run[run.size() - 1 - i];
            power *= kBase;
            beginHashes_.push_back(Scattered(begin));
            endHashes_.push_back(Scattered(end));
        }
    }
    static std::uint32_t Scattered(std::uint32_t hash) { return (hash * 0x9E37'79B1U) >> 7; }
    std::uint32_t BeginHash(std::size_t run, std::size_t size) const {
        return beginHashes_[links_[run].hashesAt + size - 1];
    }

    /// Links run `a` to the first head that goes on with what it ends with.
    void LinkToFirst(std::size_t a, std::uint32_t hash, std::size_t overlap) {
        for (std::size_t b = begin_; b < end_; ++b) {
            if (!links_[b].isHead || b == links_[a].head)  // never into a ring
                continue;
            if (BeginHash(b, overlap) == hash &&
                std::ranges::equal(runs_[a].last(overlap), runs_[b].first(overlap))) {
                Link(a, b, overlap);
                return;
            }
        }
    }

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
    bool descends_;
    std::size_t begin_, end_;  ///< of the runs longer than the overlap
    std::vector<std::uint32_t> beginHashes_, endHashes_;
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
