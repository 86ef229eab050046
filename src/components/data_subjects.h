#pragma once

#include <cstdint>

#include "platform/cstring.h"

namespace loom {

// Kinds of data subjects. Those of record sets are read through IRecordsetData, all others through IMemoryData.
enum SubjectKind : std::int32_t {
  kSubjectStream = 1,
  kSubjectNetworkElements = 2,
  kSubjectNeighbours = 4,
  kSubjectCustomGroups = 6,
};

constexpr bool IsRecordsetKind(std::int32_t kind) { return kind == 2 || kind == 4 || kind == 6; }

// Rows read forward, one after the other. What fails throws Error.
class IRowData {
 public:
  virtual ~IRowData() = default;
  virtual std::int32_t GetRowCount() = 0;
  // Both before the first row is read: the first holds the rows as they are, the second goes to the first of them.
  virtual void BeginReading() = 0;
  virtual void MoveFirst() = 0;
  // The named field of the current row as text; empty when the row lacks it.
  virtual CString GetFieldText(const CString& field) = 0;
  virtual void Move(std::int32_t rows) = 0;
  virtual void EndReading() = 0;
};
class IRecordsetData : public IRowData {};
class IMemoryData : public IRowData {};

// A view of rows of the host's. The object itself is the IRecordsetData or IMemoryData of its kind.
class ISubject {
 public:
  virtual ~ISubject() = default;
  virtual std::int32_t GetSubjectKind() const = 0;
};

}  // namespace loom
