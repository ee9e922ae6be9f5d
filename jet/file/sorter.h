// Sorting more than fits into memory: records ascend by the bytes of their keys; records with equal keys
// keep the order of their arrival. Sorted runs are set aside and merged.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "jet/file/bytes.h"
#include "jet/file/scratch.h"

namespace zimbrat::jet {

class Sorter {
 public:
  explicit Sorter(Pager& pager) : scratch_(pager) {}

  void Add(ConstBytes key, ConstBytes payload);
  std::uint64_t Count() const { return count_; }
  // The first, and each further record; false behind the last. No Add afterwards.
  bool Next();
  // Of the record that Next came to; valid until the next call.
  ConstBytes Key() const { return key_; }
  ConstBytes Payload() const { return payload_; }

 private:
  // A record within the memory block.
  struct Record {
    std::size_t offset = 0;
    std::uint32_t keySize = 0;
    std::uint32_t payloadSize = 0;
  };
  // A sorted run in the scratch, and the part of it that is in memory.
  struct Run {
    std::uint64_t next = 0;  // first byte that was not read into the buffer
    std::uint64_t end = 0;
    std::size_t place = 0;   // of the current record in the buffer
    std::vector<std::byte> buffer;
    std::uint32_t keySize = 0;
    std::uint32_t payloadSize = 0;
  };

  ConstBytes KeyOf(const Record& record) const;
  ConstBytes KeyOf(const Run& run) const;
  void SortMemory();
  void StoreRun();
  void StartMerge();
  bool Advance(std::size_t run);
  void Fill(Run& run, std::size_t size);
  bool NextInMemory();
  bool NextMerged();
  bool ComesLater(std::size_t a, std::size_t b) const;

  Scratch scratch_;
  std::uint64_t count_ = 0;
  std::vector<std::byte> memory_;
  std::vector<Record> records_;
  std::vector<Run> runs_;
  std::vector<std::size_t> heap_;  // runs by their current keys, the least on top
  std::size_t bufferSize_ = 0;
  std::size_t position_ = 0;
  bool started_ = false;
  ConstBytes key_;
  ConstBytes payload_;
};

}  // namespace zimbrat::jet
