#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

/// A worker is given its next jobs while it has another one in hand, so that it need not wait. Until it
/// begins a job, the supervisor may take it back. Both share a page that has the numbers of the jobs: who
/// takes a number out has the job.
class JobTicket {
public:
    /// So many numbers may be in at a time. The supervisor knows that a job is done before the worker begins
    /// the next one, which is in hand then as far as the supervisor knows, and still has its number in.
    static constexpr uint32_t kMost = 64;

    /// A file for the page; -1 if there is none.
    static int MakeFile();

    JobTicket() = default;
    ~JobTicket();
    JobTicket(const JobTicket&) = delete;
    JobTicket& operator=(const JobTicket&) = delete;

    /// False if the page cannot be shared: then there are no next jobs.
    bool Open(int file);
    bool IsOpen() const { return page != nullptr; }
    /// Puts in the number of a job, one more than the last one; not 0.
    void Put(uint32_t number) { page[number % kPlaces].store(number); }
    /// Takes this number out. False if it is not in.
    bool Take(uint32_t number) { return page[number % kPlaces].compare_exchange_strong(number, 0); }

private:
    using Number = std::atomic<uint32_t>;
    static_assert(Number::is_always_lock_free);
    static constexpr uint32_t kPlaces = kMost;
    static constexpr size_t kPageBytes = kPlaces * sizeof(Number);

    Number* page = nullptr;
};
