/* The functions that a host offers to its add-ons, but for the dialog toolkit (QelGUI.h).
 *
 * Threads   the host's user-interface thread, for every function.
 * Lock      between QelUtilLockStart and QelUtilLockFinish, unless a group says otherwise.
 * Indices   zones, variables, cells, nodes, faces, points, items and pages count from 1; only the
 * two raw accessors (QelFieldGet_pf, QelFieldSet_pf) take an offset from 0. Results   bool: true on
 * success. A handle: null on failure. Bad arguments (an unknown zone, a null handle, an index out
 * of range) are refused with false, null or 0, and leave everything as it was; out-parameters are
 * then untouched unless a function says otherwise. Strings   UTF-8, zero-terminated. A char**
 * out-parameter receives a host-allocated string that the caller releases with
 * QelUtilStringDealloc. Errors    no exception crosses this boundary in either direction. */
#ifndef QELVANE_QELUTIL_H
#define QELVANE_QELUTIL_H

#include "qelvane/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Lock -------------------------------------------------------------------------------------
 * A stack of owners: a start pushes, a finish pops, pairs nest freely; the owner is the top. The
 * host pushes itself while it carries out an action of its own and delivers that action's state
 * changes; it does not hold the lock while it calls an add-on's menu, dialog, probe, idle or macro
 * callback. */

/* Bracket the whole of an add-on's entry point while it is loaded; the owner is the host. */
QEL_API void QelUtilLockOn(void);
QEL_API void QelUtilLockOff(void);
/* Push and pop the add-on as owner. A null handle is ignored. */
QEL_API void QelUtilLockStart(QelAddOn* addOn);
QEL_API void QelUtilLockFinish(QelAddOn* addOn);
QEL_API bool QelUtilLockIsOn(void);
/* name: the caller's to release. False, and name null, when no lock is on. */
QEL_API bool QelUtilLockGetCurrentOwnerName(char** name);

/* ---- Registration, menus, state changes, idle queue -------------------------------------------
 */

/* Registers the calling add-on under name. Returns its handle, which lives as long as the process:
 * a host never unloads an add-on. interfaceVersion: 110. */
QEL_API QelAddOn* QelUtilAddOnRegister(LgIndex_t interfaceVersion, const char* name,
                                       const char* version, const char* author);
/* Routes journal lines that begin with addOnName to the callback. */
QEL_API bool QelUtilMacroAddCommandCallback(const char* addOnName,
                                            QelMacroCommandCallback_pf callback);
/* menuPath: "Data" and so on. mnemonic: which character of the label is underlined. */
QEL_API void QelUtilMenuAddSeparator(const char* menuPath);
QEL_API void QelUtilMenuAddOption(const char* menuPath, const char* label, char mnemonic,
                                  QelMenuCallback_pf callback);
QEL_API void QelUtilMenuSetSensitivity(const char* menuPath, const char* label, bool sensitive);
/* args: CALLBACKFUNCTION, STATECHANGEMODE, STATECHANGECALLBACKAPI. */
QEL_API bool QelUtilStateChangeAddCallbackX(QelArgList* args);
/* The n-th name, 1 to 3, of the style path that changed; only while StateChange_Style is delivered,
 * else false. param: the caller's to release. Needs no lock. */
QEL_API bool QelUtilStateChangeGetStyleParam(LgIndex_t n, char** param);
/* Tells every registered callback, the caller's too. callData: a QelSet* of zones or variables as
 * the change demands, or 0. */
QEL_API void QelUtilStateChanged(QelStateChange_t change, ArbParam_t callData);
/* args: STATECHANGE, ZONELIST, VARLIST. */
QEL_API void QelUtilStateChangedX(QelArgList* args);
/* Queues one call of callback. Idle callbacks run once each, in queue order, when the host has
 * nothing else to do: after the event in hand, or after each journal line of a headless run. */
QEL_API bool QelUtilOnIdleQueueAddCallback(QelOnIdleCallback_pf callback, ArbParam_t clientData);

/* ---- Strings, sets, argument lists ------------------------------------------------------------
 * Whoever allocates one frees it; Dealloc sets the caller's pointer to null and ignores null. */

/* maxLength + 1 bytes, zero-filled. label: what for, for the host's accounts. */
QEL_API char* QelUtilStringAlloc(LgIndex_t maxLength, const char* label);
QEL_API void QelUtilStringDealloc(char** s);

QEL_API QelSet* QelUtilSetAlloc(bool showErrors);
QEL_API void QelUtilSetDealloc(QelSet** set);
/* member: at least 1. Adding a member twice succeeds. */
QEL_API bool QelUtilSetAddMember(QelSet* set, SetIndex_t member, bool showErrors);
QEL_API bool QelUtilSetIsMember(const QelSet* set, SetIndex_t member);
QEL_API SetIndex_t QelUtilSetGetMemberCount(const QelSet* set);
/* The members in ascending order: the one after previous; 0 starts and ends. */
QEL_API SetIndex_t QelUtilSetGetNextMember(const QelSet* set, SetIndex_t previous);

/* An argument list copies numbers, names and strings; arrays, sets and pointers must outlive its
 * use. */
QEL_API QelArgList* QelUtilArgListAlloc(void);
QEL_API void QelUtilArgListClear(QelArgList* list);
QEL_API void QelUtilArgListDealloc(QelArgList** list);
QEL_API bool QelUtilArgListAppendInt(QelArgList* list, const char* name, LgIndex_t value);
QEL_API bool QelUtilArgListAppendDouble(QelArgList* list, const char* name, double value);
QEL_API bool QelUtilArgListAppendString(QelArgList* list, const char* name, const char* value);
QEL_API bool QelUtilArgListAppendArray(QelArgList* list, const char* name, const void* values);
QEL_API bool QelUtilArgListAppendSet(QelArgList* list, const char* name, const QelSet* set);
QEL_API bool QelUtilArgListAppendFunction(QelArgList* list, const char* name, const void* function);
QEL_API bool QelUtilArgListAppendArbParam(QelArgList* list, const char* name, ArbParam_t value);
QEL_API bool QelUtilArgListAppendArbParamPtr(QelArgList* list, const char* name, ArbParam_t* value);
QEL_API bool QelUtilArgListAppendDoublePtr(QelArgList* list, const char* name, double* value);

/* ---- Frames -----------------------------------------------------------------------------------
 */

QEL_API LgIndex_t QelUtilFrameGetCount(void);
/* Of the active frame; 0 when there is none. */
QEL_API QelUniqueID_t QelUtilFrameGetUniqueID(void);
/* Sends StateChange_NewActiveFrame, but not for the frame that is already active. */
QEL_API bool QelUtilFrameActivateByUniqueID(QelUniqueID_t id);
QEL_API QelPlotType_e QelUtilFrameGetPlotType(void);

/* ---- Data set: that of the active frame --------------------------------------------------------
 */

QEL_API bool QelUtilDataSetIsAvailable(void);
QEL_API QelUniqueID_t QelUtilDataSetGetUniqueID(void);
/* Each out-parameter nullable; title is the caller's to release. */
QEL_API bool QelUtilDataSetGetInfo(char** title, LgIndex_t* numZones, LgIndex_t* numVars);
QEL_API LgIndex_t QelUtilDataSetGetNumZones(void);
QEL_API LgIndex_t QelUtilDataSetGetNumVars(void);
/* Appends a zone: active, its coordinate variables nodal and active, all others passive. Finite
 * elements: iMax nodes, jMax elements, kMax ignored. varTypes: one per variable, or null to let the
 * host choose. Sends nothing: the caller announces it. */
QEL_API bool QelUtilDataSetAddZone(const char* name, LgIndex_t iMax, LgIndex_t jMax, LgIndex_t kMax,
                                   QelZoneType_e type, const QelFieldDataType_e* varTypes);
/* Refused when one of the zones came from a file. Sends StateChange_ZonesDeleted. */
QEL_API bool QelUtilDataSetDeleteZone(const QelSet* zones);
/* args: NAME, VARDATATYPE, VALUELOCATION (arrays, one entry per zone), DEFERVARCREATION (1: passive
 * in every zone until QelUtilDataValueAlloc). Sends nothing: the caller announces it. */
QEL_API bool QelUtilDataSetAddVarX(QelArgList* args);
/* Appends a quadrilateral zone of iPoints x jPoints points. x, y: the centre's; z: that of the
 * sphere's lowest point. */
QEL_API bool QelUtilCreateSphericalZone(LgIndex_t iPoints, LgIndex_t jPoints, double x, double y,
                                        double z, double radius, QelFieldDataType_e type);

/* ---- Zones ------------------------------------------------------------------------------------
 */

QEL_API bool QelUtilZoneGetName(LgIndex_t zone, char** name);
QEL_API bool QelUtilZoneRename(LgIndex_t zone, const char* name);
QEL_API QelZoneType_e QelUtilZoneGetType(LgIndex_t zone);
/* Types 1 to 7. */
QEL_API bool QelUtilZoneIsFiniteElement(LgIndex_t zone);
/* Ordered: node dimensions, 1 where absent. Types 1 to 5: nodes, elements, nodes per element.
 * Types 6 and 7: nodes, elements, faces. Each out-parameter nullable; 0 for an unknown zone. */
QEL_API void QelUtilZoneGetIJK(LgIndex_t zone, LgIndex_t* i, LgIndex_t* j, LgIndex_t* k);
QEL_API bool QelUtilZoneIsActive(LgIndex_t zone);
/* The zones that apply at a solution time, in a new set that the caller frees. */
QEL_API bool QelUtilZoneGetRelevant(double solutionTime, bool ignoreStrandID, QelSet** zones);
QEL_API double QelUtilSolutionTimeGetCurrent(void);
/* 0: a static zone, relevant at every time. */
QEL_API void QelUtilZoneSetStrandID(LgIndex_t zone, LgIndex_t strand);
/* The style map that draws the zone. */
QEL_API LgIndex_t QelUtilZoneGetFieldMap(LgIndex_t zone);

/* ---- Variables --------------------------------------------------------------------------------
 */

QEL_API bool QelUtilVarGetName(LgIndex_t var, char** name);
/* 0 when there is none. */
QEL_API LgIndex_t QelUtilVarGetNumByName(const char* name);
/* axis: 'X', 'Y' or 'Z' of the active frame's plot; 0 when there is none. */
QEL_API LgIndex_t QelUtilVarGetNumByAssignment(char axis);
/* Over all zones, NaN left out; 0, 0 when there is no value. */
QEL_API void QelUtilVarGetMinMax(LgIndex_t var, double* min, double* max);

/* ---- Field data: the values of one variable in one zone ----------------------------------------
 * Life      the host owns every reference. It is valid until the zone or variable is deleted or its
 *           values are reallocated (QelUtilDataValueAlloc, QelUtilDataValueBranchShared). Never
 *           free it.
 * Order     node values in node order, cell values in cell order. Cells of an ordered zone of iMax
 * x jMax x kMax nodes: each dimension has one cell fewer than nodes, but at least one; i runs
 *           fastest, then j, then k. A cell's corners are the nodes at i and i+1, j and j+1, k and
 * k+1 in every dimension greater than 1. Writing   to an integer type the value is rounded to
 * nearest (halves away from zero) and clamped to the type's range, NaN becomes 0; to float it is
 * rounded. */

QEL_API QelValueLocation_e QelUtilDataValueGetLocation(LgIndex_t zone, LgIndex_t var);
/* No values stored in this zone; it reads as 0. */
QEL_API bool QelUtilDataValueIsPassive(LgIndex_t zone, LgIndex_t var);
/* Makes a passive variable active, all values 0. */
QEL_API bool QelUtilDataValueAlloc(LgIndex_t zone, LgIndex_t var);
/* Zones that use the same storage, this one included. */
QEL_API LgIndex_t QelUtilDataValueGetShareCount(LgIndex_t zone, LgIndex_t var);
/* Gives the zone a storage of its own, with the same values. */
QEL_API bool QelUtilDataValueBranchShared(LgIndex_t zone, LgIndex_t var);
/* Values at nodes; a cell-centred variable is averaged. Cost: may read the variable from its file.
 */
QEL_API QelFieldData* QelUtilDataValueGetReadableNLRef(LgIndex_t zone, LgIndex_t var);
/* Values where the variable lives; null when it is passive there or cannot be written (coordinates
 * of image and rectilinear grids are computed). Cost: may read the variable from its file. */
QEL_API QelFieldData* QelUtilDataValueGetWritableNativeRef(LgIndex_t zone, LgIndex_t var);
QEL_API LgIndex_t QelUtilDataValueGetCountByRef(const QelFieldData* ref);
/* index: from 1; 0 when out of range. */
QEL_API double QelUtilDataValueGetByRef(const QelFieldData* ref, LgIndex_t index);
/* index: from 1; does nothing when ref is null, not writable or index is out of range. */
QEL_API void QelUtilDataValueSetByRef(QelFieldData* ref, LgIndex_t index, double value);
/* destOffset: from 1. source: count values of the stored type. */
QEL_API void QelUtilDataValueArraySetByRef(QelFieldData* dest, LgIndex_t destOffset,
                                           LgIndex_t count, const void* source);
/* The raw accessors of a reference; they take an offset from 0 and check nothing. */
QEL_API QelFieldGet_pf QelUtilDataValueRefGetGetFunc(const QelFieldData* ref);
QEL_API QelFieldSet_pf QelUtilDataValueRefGetSetFunc(QelFieldData* ref);
/* Bracket bulk access; nest. */
QEL_API void QelUtilDataLoadBegin(void);
QEL_API void QelUtilDataLoadEnd(void);

/* ---- Connectivity -----------------------------------------------------------------------------
 * The host owns every map; it is valid until the zone is deleted. A corner past the cell's last
 * gives node 0, a face past its last 0 neighbours.
 *
 * Corners of a brick: 1 to 4 around the bottom face, 5 to 8 above them. Local faces: brick 1
 * {1,4,5,8}, 2 {2,3,6,7}, 3 {1,2,5,6}, 4 {3,4,7,8}, 5 {1,2,3,4}, 6 {5,6,7,8}; tetrahedron 1
 * {1,2,3}, 2 {1,2,4}, 3 {1,3,4}, 4 {2,3,4}; triangle and quadrilateral: face n is the edge from
 * corner n to the next; line segment: faces 1 and 2 are its ends. */

/* Nodes of elements, zone types 1 to 5. */
QEL_API QelNodeMap* QelUtilDataNodeGetReadableRef(LgIndex_t zone);
QEL_API QelNodeMap* QelUtilDataNodeGetWritableRef(LgIndex_t zone);
QEL_API LgIndex_t QelUtilDataNodeGetByRef(const QelNodeMap* map, LgIndex_t element,
                                          LgIndex_t corner);
QEL_API void QelUtilDataNodeSetByRef(QelNodeMap* map, LgIndex_t element, LgIndex_t corner,
                                     LgIndex_t node);

/* Elements around a node, ascending, each once, zone types 1 to 7. */
QEL_API QelNodeToElemMap* QelUtilDataNodeToElemMapGetReadableRef(LgIndex_t zone);
QEL_API LgIndex_t QelUtilDataNodeToElemMapGetNumElems(const QelNodeToElemMap* map, LgIndex_t node);
QEL_API LgIndex_t QelUtilDataNodeToElemMapGetElem(const QelNodeToElemMap* map, LgIndex_t node,
                                                  LgIndex_t n);

/* Neighbours across faces, zone types 1 to 5. A neighbour is another element of the same zone,
 * blanked or not; a face that collapses to an edge or a point counts as having one. */
QEL_API QelFaceNeighbors* QelUtilDataFaceNbrGetReadableRef(LgIndex_t zone);
/* 0: a boundary face. */
QEL_API LgIndex_t QelUtilDataFaceNbrGetNumNByRef(const QelFaceNeighbors* nbr, LgIndex_t element,
                                                 LgIndex_t face);

/* Faces of elements, zone types 6 and 7. */
QEL_API QelElemToFaceMap* QelUtilDataElemGetReadableRef(LgIndex_t zone);
QEL_API LgIndex_t QelUtilDataElemGetNumFaces(const QelElemToFaceMap* map, LgIndex_t element);
QEL_API LgIndex_t QelUtilDataElemGetFace(const QelElemToFaceMap* map, LgIndex_t element,
                                         LgIndex_t n);

/* Faces and what lies on either side, zone types 6 and 7; element 0: none. */
QEL_API QelFaceMap* QelUtilDataFaceMapGetReadableRef(LgIndex_t zone);
QEL_API LgIndex_t QelUtilDataFaceMapGetLeftElem(const QelFaceMap* map, LgIndex_t face);
QEL_API LgIndex_t QelUtilDataFaceMapGetRightElem(const QelFaceMap* map, LgIndex_t face);
QEL_API LgIndex_t QelUtilDataFaceMapGetNFaceNodes(const QelFaceMap* map, LgIndex_t face);
QEL_API LgIndex_t QelUtilDataFaceMapGetFaceNode(const QelFaceMap* map, LgIndex_t face, LgIndex_t n);

/* ---- Blanking ---------------------------------------------------------------------------------
 * A cell or node is blanked when any one constraint that is on is met. */

/* Value blanking is on. */
QEL_API bool QelUtilBlankingIsActive(void);
/* True: shown; false: blanked. */
QEL_API bool QelUtilBlankingCheckDataPoint(LgIndex_t zone, LgIndex_t node);
QEL_API bool QelUtilBlankingCheckFECell(LgIndex_t zone, LgIndex_t element);
/* plane 0: the volume cell. */
QEL_API bool QelUtilBlankingCheckIJKCell(LgIndex_t zone, LgIndex_t plane, LgIndex_t cellIndex);

/* ---- Geometries: drawn on the active frame -----------------------------------------------------
 * Anchor, sizes and points are given in the geometry's position coordinate system. */

/* The first geometry in creation order; 0 when there is none. */
QEL_API QelGeomID_t QelUtilGeomGetBase(void);
QEL_API QelGeomID_t QelUtilGeomGetNext(QelGeomID_t geom);
QEL_API bool QelUtilGeomIsValid(QelGeomID_t geom);
QEL_API QelGeomType_e QelUtilGeomGetType(QelGeomID_t geom);
QEL_API void QelUtilGeomSetPositionCoordSys(QelGeomID_t geom, QelCoordSys_e sys);
QEL_API void QelUtilGeomGetAnchorPos(QelGeomID_t geom, double* x, double* y, double* z);
QEL_API void QelUtilGeomRectangleGetSize(QelGeomID_t geom, double* width, double* height);
QEL_API double QelUtilGeomSquareGetSize(QelGeomID_t geom);
QEL_API double QelUtilGeomCircleGetRadius(QelGeomID_t geom);
QEL_API LgIndex_t QelUtilGeomPolyGetPointCount(QelGeomID_t geom);
/* point: from 1; the answer is relative to the anchor. */
QEL_API void QelUtilGeom2DPolylineGetPoint(QelGeomID_t geom, LgIndex_t point, double* x, double* y);

/* ---- Pick list, probe, mouse -------------------------------------------------------------------
 */

QEL_API LgIndex_t QelUtilPickListGetCount(void);
QEL_API QelPickObject_e QelUtilPickListGetType(LgIndex_t item);
QEL_API QelGeomID_t QelUtilPickListGetGeom(LgIndex_t item);

/* The mouse mode becomes Mouse_Probe; clicks reach the callback installed last until that mode is
 * left. instruction: shown to the user. */
QEL_API bool QelUtilProbeInstallCallback(QelProbeCallback_pf callback, const char* instruction);
/* Of the last probe. */
QEL_API LgIndex_t QelUtilProbeFieldGetZone(void);
/* 0: no cell under the pointer. */
QEL_API LgIndex_t QelUtilProbeFieldGetCell(void);
/* The nearest node; 0: none. */
QEL_API LgIndex_t QelUtilProbeGetPointIndex(void);

/* Sends StateChange_MouseModeUpdate. */
QEL_API bool QelUtilMouseSetMode(QelMouseMode_e mode);
QEL_API QelMouseMode_e QelUtilMouseGetCurrentMode(void);

/* ---- Coordinates ------------------------------------------------------------------------------
 * 2D Cartesian: grid coordinates are the data's X and Y; paper coordinates are a fixed linear map
 * of them. 3D Cartesian: grid coordinates are those of the view plane, x to the right and y up on
 * the screen, in data units, measured from the view's rotation origin, in parallel projection: they
 * depend on the view's angles, never on window or zoom. */

QEL_API double QelUtilConvertXPosition(QelCoordSys_e from, QelCoordSys_e to, double x);
QEL_API double QelUtilConvertYPosition(QelCoordSys_e from, QelCoordSys_e to, double y);
QEL_API double QelUtilConvertXDimension(QelCoordSys_e from, QelCoordSys_e to, double dx);
/* Fixes the view for the projections that follow. */
QEL_API bool QelUtilSetupTransformations(void);
/* Into the plane in which the frame's geometries are drawn; gz: the distance from it towards the
 * viewer. */
QEL_API void QelUtilConvert3DPositionToGrid(double x, double y, double z, double* gx, double* gy,
                                            double* gz);

/* ---- View -------------------------------------------------------------------------------------
 * At psi = alpha = theta = 0 the viewer looks down the Z axis with X to the right and Y up; at psi
 * 90, alpha 0 along Y with X right and Z up; at psi 90, alpha -90 along X with Y right and Z up. */

/* A copy of the active frame's view, released with QelUtilViewDealloc. */
QEL_API bool QelUtilViewGet(QelView** view);
/* Sends StateChange_View, or StateChange_Style for a rotation. */
QEL_API bool QelUtilViewSet(const QelView* view);
QEL_API void QelUtilViewDealloc(QelView** view);
/* 1 fits the data to the frame; 2 shows it twice as large. */
QEL_API bool QelUtilViewGetMagnification(double* magnification);
/* Adds degrees to that angle. Sends StateChange_Style, THREEDVIEW. */
QEL_API bool QelUtilViewRotate3D(QelRotateAxis_e axis, double degrees, double x, double y, double z,
                                 QelRotateOrigin_e origin);
/* Radians. */
QEL_API bool QelUtilThreeDViewGetViewerAngle(double* psi, double* alpha, double* theta);

/* ---- Layers and styles -------------------------------------------------------------------------
 */

/* Makes contour group C1 show the variable. */
QEL_API bool QelUtilContourSetVariable(LgIndex_t var);
/* layer: SHOWEDGE, SHOWMESH, SHOWSHADE, SHOWCONTOUR, SHOWSCATTER, SHOWVECTOR. */
QEL_API bool QelUtilFieldLayerIsActive(const char* layer);
QEL_API bool QelUtilFieldLayerSetIsActive(const char* layer, bool active);

QEL_API QelSetValueResult_e QelUtilZoneSetActive(const QelSet* zones, QelAssignOp_e op);
/* attribute: SHOW (iValue), COLOR (iValue, a colour index), LINETHICKNESS (dValue, percent of the
 * frame). */
QEL_API QelSetValueResult_e QelUtilZoneSetEdgeLayer(const char* attribute, const QelSet* zones,
                                                    double dValue, ArbParam_t iValue);
QEL_API QelSetValueResult_e QelUtilZoneSetMesh(const char* attribute, const QelSet* zones,
                                               double dValue, ArbParam_t iValue);
QEL_API QelSetValueResult_e QelUtilZoneSetShade(const char* attribute, const QelSet* zones,
                                                double dValue, ArbParam_t iValue);
QEL_API QelSetValueResult_e QelUtilZoneSetScatter(const char* attribute, const QelSet* zones,
                                                  double dValue, ArbParam_t iValue);
QEL_API QelSetValueResult_e QelUtilZoneSetContour(const char* attribute, const QelSet* zones,
                                                  double dValue, ArbParam_t iValue);
QEL_API QelSetValueResult_e QelUtilZoneSetVector(const char* attribute, const QelSet* zones,
                                                 double dValue, ArbParam_t iValue);
/* args: P1 to P7, OFFSET1, OFFSET2, OBJECTSET, and the value as IVALUE or DVALUE. Paths: BLANKING
 * VALUE {INCLUDE, BLANKENTIRECELL, VALUEBLANKCELLMODE, CONSTRAINT {INCLUDE, VARA, VARB, RELOP,
 * CONSTRAINTOP2MODE, VALUECUTOFF}} (constraint number in OFFSET1); FIELDMAP {SHADE SHOW, SURFACES
 * SURFACESTOPLOT, EFFECTS USEVALUEBLANKING, VOLUMEMODE VOLUMEOBJECTSTOPLOT {SHOWSLICES,
 * SHOWISOSURFACES, SHOWSTREAMTRACES}}. Others answer SetValueResult_SyntaxError. */
QEL_API QelSetValueResult_e QelUtilStyleSetLowLevelX(QelArgList* args);
/* The same with IVALUE (ArbParam_t) and DVALUE (double) as addresses that receive the value. */
QEL_API QelSetValueResult_e QelUtilStyleGetLowLevelX(QelArgList* args);

/* ---- Macros, messages -------------------------------------------------------------------------
 * While the host plays a line recording is not active: a host that records meanwhile writes each
 * played line itself, verbatim. */

QEL_API bool QelUtilMacroIsRecordingActive(void);
/* A run without a user: messages go to the log, questions are answered No unless an answer was
 * queued. */
QEL_API bool QelUtilMacroIsBatchModeActive(void);
/* The record functions do nothing and succeed while recording is not active. */
QEL_API bool QelUtilMacroRecordAddOnCommand(const char* addOnName, const char* command);
QEL_API bool QelUtilMacroRecordRawCommand(const char* command);
/* Runs one of the host's own commands, with the host on top of the lock stack, and records
 * nothing. */
QEL_API bool QelUtilMacroExecuteCommand(const char* command);

QEL_API void QelUtilDialogErrMsg(const char* message);
/* Yes/No and OK/Cancel: true on Yes and OK; else true. */
QEL_API bool QelUtilDialogMessageBox(const char* message, QelMessageBox_e kind);
QEL_API void QelUtilPleaseWait(const char* message, bool show);
QEL_API bool QelUtilRedraw(bool doFullDrawing);
/* The host finds the file in its help folder. */
QEL_API void QelUtilHelp(const char* fileName, bool goToID, LgIndex_t helpID);

#ifdef __cplusplus
}
#endif

#endif
