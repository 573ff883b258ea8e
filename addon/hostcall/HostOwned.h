#pragma once

#include "qelvane/QelUtil.h"

#include <memory>

namespace qelvane::qelutiltools {

/// Frees what the host allocated for the add-on.
struct HostDeleter {
  void operator()(char* text) const { QelUtilStringDealloc(&text); }
  void operator()(QelSet* set) const { QelUtilSetDealloc(&set); }
  void operator()(QelArgList* list) const { QelUtilArgListDealloc(&list); }
};

/// Owners of host-allocated things, for the calls whose failure is an internal error with the
/// call's own text; elsewhere the toolbox's classes serve.
using HostString = std::unique_ptr<char, HostDeleter>;
using HostSet = std::unique_ptr<QelSet, HostDeleter>;
using HostArgList = std::unique_ptr<QelArgList, HostDeleter>;

}  // namespace qelvane::qelutiltools
