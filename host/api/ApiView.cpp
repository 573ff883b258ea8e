// View, layers and styles.
#include "ApiGuard.h"
#include "ApiHandles.h"
#include "PlotActions.h"

#include "qelvane/Keywords.h"
#include "qelvane/QelUtil.h"

#include <cmath>
#include <cstring>

using namespace qelhost;

namespace {

constexpr double kRadiansPerDegree = 0.017453292519943295;

/// Sets one attribute of one layer in the maps of the zones.
QelSetValueResult_e SetLayerStyle(const char* function, Layer layer, const char* attribute,
                                  const QelSet* zones, double dValue, ArbParam_t iValue) {
  return Guarded(function, SetValueResult_ValueError, [&](Host& host) {
    std::vector<LgIndex_t> numbers;
    if (attribute == nullptr) return SetValueResult_SyntaxError;
    if (!IndicesOf(zones, numbers)) return SetValueResult_ValueError;
    const bool isColor = std::strcmp(attribute, SV_COLOR) == 0;
    const bool isThickness = std::strcmp(attribute, SV_LINETHICKNESS) == 0;
    if (!isColor && !isThickness && std::strcmp(attribute, SV_SHOW) != 0) {
      return SetValueResult_SyntaxError;
    }
    if (isColor && (iValue < ColorIndex_Black || iValue > ColorIndex_Orange)) {
      return SetValueResult_ValueError;
    }
    if (isThickness && !(std::isfinite(dValue) && dValue >= 0.0)) return SetValueResult_ValueError;
    for (const LgIndex_t number : numbers) {
      if (ActiveZone(host, number) == nullptr) return SetValueResult_ValueError;
    }
    for (const LgIndex_t number : numbers) {
      LayerStyle& style =
          host.frames.Active()->styles.MapOf(number).layers[static_cast<std::size_t>(layer)];
      if (isColor) {
        style.color = static_cast<LgIndex_t>(iValue);
      } else if (isThickness) {
        style.lineThickness = dValue;
      } else {
        style.show = iValue != 0;
      }
    }
    host.notices.SendStyle({SV_FIELDMAP});
    return SetValueResult_Ok;
  });
}

/// The address that P1 to P7, OFFSET1 and OBJECTSET make; false when a part is not what it must be.
bool ReadAddress(const QelArgList* args, StyleAddress& address) {
  for (const char* const name : {SV_P1, SV_P2, SV_P3, SV_P4, SV_P5, SV_P6, SV_P7}) {
    const auto* const part = FindArgument<std::string>(args, name);
    if (part == nullptr) break;
    address.path.push_back(*part);
  }
  const auto* const offset = FindArgument<LgIndex_t>(args, SV_OFFSET1);
  if (offset != nullptr) address.offset1 = *offset;
  const auto* const set = FindArgument<const QelSet*>(args, SV_OBJECTSET);
  return !address.path.empty() && (set == nullptr || IndicesOf(*set, address.maps));
}

bool AreMapsKnown(const Host& host, const StyleAddress& address) {
  for (const LgIndex_t map : address.maps) {
    if (ActiveZone(host, map) == nullptr) return false;
  }
  return true;
}

}  // namespace

bool QelUtilViewGet(QelView** view) {
  return Guarded(__func__, false, [&](Host& host) {
    const Frame* const frame = host.frames.Active();
    if (view == nullptr || frame == nullptr) return false;
    *view = TheHandles().views.Make({frame->view});
    return true;
  });
}

bool QelUtilViewSet(const QelView* view) {
  return Guarded(__func__, false, [&](Host& host) {
    return TheHandles().views.Has(view) && SetView(host, view->view);
  });
}

void QelUtilViewDealloc(QelView** view) {
  GuardedVoid(__func__, [&](Host&) {
    if (view == nullptr || *view == nullptr) return;
    TheHandles().views.Release(*view);
    *view = nullptr;
  });
}

bool QelUtilViewGetMagnification(double* magnification) {
  return Guarded(__func__, false, [&](Host& host) {
    const Frame* const frame = host.frames.Active();
    if (magnification == nullptr || frame == nullptr) return false;
    *magnification = frame->view.magnification;
    return true;
  });
}

bool QelUtilViewRotate3D(QelRotateAxis_e axis, double degrees, double /*x*/, double /*y*/,
                         double /*z*/, QelRotateOrigin_e origin) {
  return Guarded(__func__, false, [&](Host& host) {
    const bool isOrigin =
        origin >= RotateOriginLocation_DefinedOrigin && origin <= RotateOriginLocation_Viewer;
    return isOrigin && RotateView(host, axis, degrees);
  });
}

bool QelUtilThreeDViewGetViewerAngle(double* psi, double* alpha, double* theta) {
  return Guarded(__func__, false, [&](Host& host) {
    const Frame* const frame = host.frames.Active();
    if (frame == nullptr) return false;
    if (psi != nullptr) *psi = frame->view.psiDeg * kRadiansPerDegree;
    if (alpha != nullptr) *alpha = frame->view.alphaDeg * kRadiansPerDegree;
    if (theta != nullptr) *theta = frame->view.thetaDeg * kRadiansPerDegree;
    return true;
  });
}

bool QelUtilContourSetVariable(LgIndex_t var) {
  return Guarded(__func__, false, [&](Host& host) { return SetContourVariable(host, var); });
}

bool QelUtilFieldLayerIsActive(const char* layer) {
  return Guarded(__func__, false, [&](Host& host) {
    Layer found{};
    if (host.frames.Active() == nullptr || !LayerOfKeyword(TextOf(layer), found)) return false;
    return host.frames.Active()->styles.layerActive[static_cast<std::size_t>(found)];
  });
}

bool QelUtilFieldLayerSetIsActive(const char* layer, bool active) {
  return Guarded(__func__, false, [&](Host& host) {
    Layer found{};
    return LayerOfKeyword(TextOf(layer), found) && SetLayerActive(host, found, active);
  });
}

QelSetValueResult_e QelUtilZoneSetActive(const QelSet* zones, QelAssignOp_e op) {
  return Guarded(__func__, SetValueResult_ValueError, [&](Host& host) {
    std::vector<LgIndex_t> numbers;
    return IndicesOf(zones, numbers) && SetZonesActive(host, numbers, op)
               ? SetValueResult_Ok
               : SetValueResult_ValueError;
  });
}

QelSetValueResult_e QelUtilZoneSetEdgeLayer(const char* attribute, const QelSet* zones,
                                            double dValue, ArbParam_t iValue) {
  return SetLayerStyle(__func__, Layer::Edge, attribute, zones, dValue, iValue);
}

QelSetValueResult_e QelUtilZoneSetMesh(const char* attribute, const QelSet* zones, double dValue,
                                       ArbParam_t iValue) {
  return SetLayerStyle(__func__, Layer::Mesh, attribute, zones, dValue, iValue);
}

QelSetValueResult_e QelUtilZoneSetShade(const char* attribute, const QelSet* zones, double dValue,
                                        ArbParam_t iValue) {
  return SetLayerStyle(__func__, Layer::Shade, attribute, zones, dValue, iValue);
}

QelSetValueResult_e QelUtilZoneSetScatter(const char* attribute, const QelSet* zones, double dValue,
                                          ArbParam_t iValue) {
  return SetLayerStyle(__func__, Layer::Scatter, attribute, zones, dValue, iValue);
}

QelSetValueResult_e QelUtilZoneSetContour(const char* attribute, const QelSet* zones, double dValue,
                                          ArbParam_t iValue) {
  return SetLayerStyle(__func__, Layer::Contour, attribute, zones, dValue, iValue);
}

QelSetValueResult_e QelUtilZoneSetVector(const char* attribute, const QelSet* zones, double dValue,
                                         ArbParam_t iValue) {
  return SetLayerStyle(__func__, Layer::Vector, attribute, zones, dValue, iValue);
}

QelSetValueResult_e QelUtilStyleSetLowLevelX(QelArgList* args) {
  return Guarded(__func__, SetValueResult_ValueError, [&](Host& host) {
    StyleAddress address;
    if (!ReadAddress(args, address)) return SetValueResult_SyntaxError;
    const auto* const integer = FindArgument<ArbParam_t>(args, SV_IVALUE);
    const auto* const number = FindArgument<LgIndex_t>(args, SV_IVALUE);
    const auto* const real = FindArgument<double>(args, SV_DVALUE);
    if (!AreMapsKnown(host, address)) address.maps.clear();
    if (integer == nullptr && number == nullptr && real == nullptr) {
      return SetValueResult_ValueError;
    }
    const ArbParam_t iValue = integer != nullptr  ? *integer
                              : number != nullptr ? *number
                                                  : IntegerOf(*real);
    return ApplyStyle(host, address, iValue, real != nullptr ? *real : static_cast<double>(iValue));
  });
}

QelSetValueResult_e QelUtilStyleGetLowLevelX(QelArgList* args) {
  return Guarded(__func__, SetValueResult_ValueError, [&](Host& host) {
    StyleAddress address;
    if (!ReadAddress(args, address)) return SetValueResult_SyntaxError;
    Frame* const frame = host.frames.Active();
    if (frame == nullptr) return SetValueResult_ValueError;
    if (!AreMapsKnown(host, address)) address.maps.clear();
    auto* const* const integer = FindArgument<ArbParam_t*>(args, SV_IVALUE);
    auto* const* const real = FindArgument<double*>(args, SV_DVALUE);
    return GetStyle(frame->styles, address, integer == nullptr ? nullptr : *integer,
                    real == nullptr ? nullptr : *real);
  });
}
