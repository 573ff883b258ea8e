/// An owned argument list of the host interface.
#ifndef QELVANE_TOOLBOX_ARGLIST_H
#define QELVANE_TOOLBOX_ARGLIST_H

#include "qelvane/QelUtil.h"

#include <new>
#include <string>
#include <utility>

namespace qelvane::toolbox {

/// Owns one QelArgList and frees it. Move-only; a moved-from list holds null.
///
/// Numbers, names and strings are copied by the host; arrays, sets and pointers must outlive the
/// list's use. The append functions answer false when the host refuses.
class ArgList {
 public:
  /// throws  std::bad_alloc when the host has no list to give
  ArgList() : m_list(QelUtilArgListAlloc()) {
    if (m_list == nullptr) throw std::bad_alloc();
  }
  ~ArgList() {
    if (m_list != nullptr) QelUtilArgListDealloc(&m_list);
  }
  ArgList(const ArgList&) = delete;
  ArgList& operator=(const ArgList&) = delete;
  ArgList(ArgList&& other) noexcept : m_list(std::exchange(other.m_list, nullptr)) {}
  ArgList& operator=(ArgList&& other) noexcept {
    std::swap(m_list, other.m_list);
    return *this;
  }

  /// The handle, still owned by this object.
  QelArgList* getRef() const { return m_list; }

  void clear() { QelUtilArgListClear(m_list); }
  bool appendInt(const char* name, LgIndex_t value) {
    return QelUtilArgListAppendInt(m_list, name, value);
  }
  bool appendDouble(const char* name, double value) {
    return QelUtilArgListAppendDouble(m_list, name, value);
  }
  bool appendString(const char* name, const std::string& value) {
    return QelUtilArgListAppendString(m_list, name, value.c_str());
  }
  bool appendArray(const char* name, const void* values) {
    return QelUtilArgListAppendArray(m_list, name, values);
  }
  bool appendSet(const char* name, const QelSet* set) {
    return QelUtilArgListAppendSet(m_list, name, set);
  }
  bool appendFunction(const char* name, const void* function) {
    return QelUtilArgListAppendFunction(m_list, name, function);
  }
  bool appendArbParam(const char* name, ArbParam_t value) {
    return QelUtilArgListAppendArbParam(m_list, name, value);
  }
  bool appendArbParamPtr(const char* name, ArbParam_t* value) {
    return QelUtilArgListAppendArbParamPtr(m_list, name, value);
  }
  bool appendDoublePtr(const char* name, double* value) {
    return QelUtilArgListAppendDoublePtr(m_list, name, value);
  }

 private:
  QelArgList* m_list;
};

}  // namespace qelvane::toolbox

#endif
