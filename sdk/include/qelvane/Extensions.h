/* Optional services that a host may or may not offer.
 *
 * QelUtilExtensionGet is the one symbol that a host may lack: an add-on refers to it weakly, asks
 * once per operation and, without the symbol or with a null answer, goes through QelUtil.h value by
 * value, with the same data, notices, messages and recorded lines. An id ends in its version; a
 * published struct never changes. A false from a member function means "not for this one": the
 * add-on falls back for that field, map or zone alone.
 *
 * Threads: user-interface thread, but for the body that QelParallel_s::forRange runs, which calls
 * no host function. */
#ifndef QELVANE_EXTENSIONS_H
#define QELVANE_EXTENSIONS_H

#include "qelvane/Types.h"

#if defined(QELVANE_HOST) || !defined(__GNUC__)
#define QEL_WEAK
#else
#define QEL_WEAK __attribute__((weak))
#endif

#define QEL_EXTENSION_BULK_ACCESS "qelvane.bulk-access/1"
#define QEL_EXTENSION_PARALLEL "qelvane.parallel/1"
#define QEL_EXTENSION_PROGRESS "qelvane.progress/1"
#define QEL_EXTENSION_PICK_QUERY "qelvane.pick-query/1"
#define QEL_EXTENSION_SHAPE_HANDLES "qelvane.shape-handles/1"
#define QEL_EXTENSION_HISTORY "qelvane.history/1"
#define QEL_EXTENSION_COMMAND_CHECK "qelvane.command-check/1"

/* The values of a field where they lie. first is aligned for its type. */
typedef struct {
  void* first;
  QelFieldDataType_e type;
  int64_t stride; /* in bytes */
  int64_t count;
} QelFieldSpan_s;

/* The nodes of a zone's elements where they lie. */
typedef struct {
  void* first;
  int32_t indexWidth; /* 4 or 8 bytes */
  int32_t indexBase;  /* 0 or 1 */
  int32_t nodesPerElement;
  int64_t count; /* elements */
} QelNodeSpan_s;

/* "qelvane.bulk-access/1". A span is written through only when its reference is a writable one.
 * Spans and bit sets stay valid until the values, their storage or the blanking settings change. */
typedef struct {
  bool (*fieldSpan)(const QelFieldData* ref, QelFieldSpan_s* span);
  bool (*nodeMapSpan)(const QelNodeMap* map, QelNodeSpan_s* span);
  /* The 4 x 4 row-major matrix of QelUtilConvert3DPositionToGrid, when that is linear. */
  bool (*projection)(double m[16]);
  /* One bit an item, 1 = blanked; count in bits. */
  bool (*blankedCells)(LgIndex_t zone, const uint64_t** bits, int64_t* count);
  bool (*blankedNodes)(LgIndex_t zone, const uint64_t** bits, int64_t* count);
} QelBulkAccess_s;

/* "qelvane.parallel/1". forRange runs body over disjoint half-open ranges that cover [first, last),
 * each starting at first plus a multiple of grain, on the host's pool, and returns when all are
 * done. */
typedef struct {
  LgIndex_t (*workers)(void);
  void (*forRange)(int64_t first, int64_t last, int64_t grain,
                   void (*body)(int64_t first, int64_t last, void* context), void* context);
} QelParallel_s;

/* "qelvane.progress/1". report: the progress of the operation in hand, 0 to 1. changed: how many
 * values it has written in a zone. */
typedef struct {
  void (*report)(double fraction);
  void (*changed)(LgIndex_t zone, LgIndex_t var, int64_t count);
} QelProgress_s;

/* Sets one bit for every value of the zone's target variable that applying the pick in hand would
 * change; false when there is nothing to apply. Changes and records nothing. */
typedef bool (*QelPickQuery_pf)(LgIndex_t zone, uint64_t* bits, int64_t bitCount);

/* "qelvane.pick-query/1". Offered once, at the end of InitQelAddOn113. */
typedef struct {
  void (*offer)(QelPickQuery_pf query);
} QelPickQuery_s;

/* "qelvane.history/1". The host calls the function offered after its own undo or redo has put
 * values back: the add-on drops its undo. Offered once, at the end of InitQelAddOn113. */
typedef struct {
  void (*offer)(void (*valuesRestored)(void));
} QelHistory_s;

typedef void (*QelShapeChanged_pf)(const double anchor[3], const double size[3],
                                   const double rotationDeg[3]);

/* "qelvane.shape-handles/1". A shape that the user drags, sizes and turns in the plot; a sphere's
 * anchor is its centre and size[0] its radius. */
typedef struct {
  void (*show)(QelShape_e kind, const double anchor[3], const double size[3],
               const double rotationDeg[3], QelShapeChanged_pf changed);
  void (*hide)(void);
} QelShapeHandles_s;

/* Parses one command line of the add-on and touches no data. Lines are handed over in a journal's
 * order; a null command says that a journal begins. Returns false when the line does not parse;
 * errMsg then receives a host-allocated string with the reason, which the host takes over. For a
 * good line that does, after the lines before it, what its author hardly meant it receives a
 * warning; else it stays as it is. */
typedef bool (*QelCommandCheck_pf)(const char* command, char** errMsg);

/* "qelvane.command-check/1". Lets a host check journals without a data set. addOnName is the name
 * that the add-on registered. Offered once, at the end of InitQelAddOn113. */
typedef struct {
  void (*offer)(const char* addOnName, QelCommandCheck_pf check);
} QelCommandCheck_s;

#ifdef __cplusplus
extern "C" {
#endif

/* The service with that id, or null when the host does not offer it. The host owns it; it stays
 * valid for the life of the process. */
QEL_API const void* QelUtilExtensionGet(const char* id) QEL_WEAK;

#ifdef __cplusplus
}
#endif

#endif
