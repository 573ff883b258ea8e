/* Integer types, opaque handles, enumerations and callback types of the host interface.
 *
 * Reads as C11 and as C++17. Every enumeration is 32 bits wide, every handle is a pointer to a
 * struct that only the host defines. Numbers are part of the binary contract and never change. */
#ifndef QELVANE_TYPES_H
#define QELVANE_TYPES_H

#include <stdbool.h>
#include <stdint.h>

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

/* The version of this SDK, as an add-on names it when it registers. */
#define QelVersionId "1.0.0"

/* Marks what a host exports from its shared library. */
#if defined(__GNUC__)
#define QEL_API __attribute__((visibility("default")))
#else
#define QEL_API
#endif

#ifdef __cplusplus
#define QEL_ENUM_BASE : int32_t
#else
#define QEL_ENUM_BASE
#endif

typedef int32_t LgIndex_t;     /* counts and 1-based indices */
typedef int64_t SetIndex_t;    /* members of a set */
typedef intptr_t ArbParam_t;   /* an integer or pointer passed through the host */
typedef int64_t QelUniqueID_t; /* never reused within a process; 0 = none */
typedef int64_t QelGeomID_t;   /* a geometry; 0 = none */
typedef int32_t QelStateChange_t;

/* Opaque handles. The host owns what they point to unless a function says that it is the
 * caller's. */
typedef struct QelAddOn QelAddOn;
typedef struct QelArgList QelArgList;
typedef struct QelSet QelSet;
typedef struct QelView QelView;
typedef struct QelFieldData QelFieldData;
typedef struct QelNodeMap QelNodeMap;
typedef struct QelNodeToElemMap QelNodeToElemMap;
typedef struct QelFaceNeighbors QelFaceNeighbors;
typedef struct QelElemToFaceMap QelElemToFaceMap;
typedef struct QelFaceMap QelFaceMap;

typedef enum QelPlotType_e QEL_ENUM_BASE {
  PlotType_None = 0,
  PlotType_Cartesian3D = 1,
  PlotType_Cartesian2D = 2,
  PlotType_Line = 3,
  PlotType_Polar = 4,
  PlotType_Sketch = 5
} QelPlotType_e;

typedef enum QelZoneType_e QEL_ENUM_BASE {
  ZoneType_Ordered = 0,
  ZoneType_FETriangle = 1,
  ZoneType_FEQuad = 2,
  ZoneType_FETetra = 3,
  ZoneType_FEBrick = 4,
  ZoneType_FELineSeg = 5,
  ZoneType_FEPolygon = 6,
  ZoneType_FEPolyhedron = 7
} QelZoneType_e;

typedef enum QelFieldDataType_e QEL_ENUM_BASE {
  FieldDataType_Invalid = 0,
  FieldDataType_Float = 1,
  FieldDataType_Double = 2,
  FieldDataType_Int32 = 3,
  FieldDataType_Int16 = 4,
  FieldDataType_Byte = 5, /* unsigned */
  FieldDataType_Int64 = 6
} QelFieldDataType_e;

typedef enum QelValueLocation_e QEL_ENUM_BASE {
  ValueLocation_CellCentered = 0,
  ValueLocation_Nodal = 1
} QelValueLocation_e;

typedef enum QelMouseMode_e QEL_ENUM_BASE {
  Mouse_None = 0,
  Mouse_Select = 1,
  MouseButtonMode_Select = 1,
  Mouse_Zoom = 2,
  Mouse_Translate = 3,
  Mouse_Rotate = 4,
  Mouse_Probe = 5,
  Mouse_GeomPolyline = 6,
  Mouse_GeomRectangle = 7,
  Mouse_GeomSquare = 8,
  Mouse_GeomCircle = 9,
  Mouse_GeomEllipse = 10
} QelMouseMode_e;

typedef enum QelMessageBox_e QEL_ENUM_BASE {
  MessageBox_Information = 0,
  MessageBox_Error = 1,
  MessageBox_Warning = 2,
  MessageBox_OkCancel = 3,
  MessageBox_YesNo = 4
} QelMessageBox_e;

typedef enum QelGeomType_e QEL_ENUM_BASE {
  GeomType_LineSegs = 0, /* a 2D polyline */
  GeomType_Rectangle = 1,
  GeomType_Square = 2,
  GeomType_Circle = 3,
  GeomType_Ellipse = 4
} QelGeomType_e;

typedef enum QelCoordSys_e QEL_ENUM_BASE {
  CoordSys_Grid = 0,
  CoordSys_Frame = 1,
  CoordSys_Window = 2,
  CoordSys_Paper = 3
} QelCoordSys_e;

typedef enum QelPickObject_e QEL_ENUM_BASE {
  PickObject_None = 0,
  PickObject_Frame = 1,
  PickObject_Zone = 2,
  PickObject_Text = 3,
  PickObject_Geom = 4,
  PickObject_Legend = 5
} QelPickObject_e;

typedef enum QelRotateAxis_e QEL_ENUM_BASE {
  RotateAxis_Psi = 0,
  RotateAxis_Theta = 1,
  RotateAxis_Alpha = 2
} QelRotateAxis_e;

typedef enum QelRotateOrigin_e QEL_ENUM_BASE {
  RotateOriginLocation_DefinedOrigin = 0,
  RotateOriginLocation_Viewer = 1
} QelRotateOrigin_e;

typedef enum QelAssignOp_e QEL_ENUM_BASE {
  AssignOp_Equals = 0,
  AssignOp_PlusEquals = 1,
  AssignOp_MinusEquals = 2
} QelAssignOp_e;

typedef enum QelSetValueResult_e QEL_ENUM_BASE {
  SetValueResult_Ok = 0,
  SetValueResult_Duplicate = 1,   /* the value is already so */
  SetValueResult_SyntaxError = 2, /* no such path */
  SetValueResult_ValueError = 3
} QelSetValueResult_e;

/* How a value-blanking constraint compares. */
typedef enum QelBlankRelOp_e QEL_ENUM_BASE {
  BlankRelOp_LessThanOrEqual = 0,
  BlankRelOp_GreaterThanOrEqual = 1,
  BlankRelOp_LessThan = 2,
  BlankRelOp_GreaterThan = 3,
  BlankRelOp_EqualTo = 4,
  BlankRelOp_NotEqualTo = 5
} QelBlankRelOp_e;

/* What a value-blanking constraint compares variable A with. */
typedef enum QelConstraintOp2Mode_e QEL_ENUM_BASE {
  ConstraintOp2Mode_UseVar = 0,
  ConstraintOp2Mode_UseConstant = 1
} QelConstraintOp2Mode_e;

/* Which values of a cell decide whether value blanking hides it. */
typedef enum QelBlankCellMode_e QEL_ENUM_BASE {
  BlankCellMode_AllCorners = 0,
  BlankCellMode_AnyCorner = 1,
  BlankCellMode_PrimaryValue = 2
} QelBlankCellMode_e;

typedef enum QelShape_e QEL_ENUM_BASE { Shape_Box = 0, Shape_Sphere = 1 } QelShape_e;

/* The colours that a style can name. */
typedef enum QelColorIndex_e QEL_ENUM_BASE {
  ColorIndex_Black = 0,
  ColorIndex_Red = 1,
  ColorIndex_Green = 2,
  ColorIndex_Blue = 3,
  ColorIndex_Cyan = 4,
  ColorIndex_Yellow = 5,
  ColorIndex_Purple = 6,
  ColorIndex_White = 7,
  ColorIndex_Orange = 8
} QelColorIndex_e;

/* Codes that a state-change callback receives; sets and keywords in brackets are the notice's
 * supplements (QelUtilStateChanged, QelUtilStateChangedX, QelUtilStateChangeGetStyleParam). */
enum {
  StateChange_VarsAdded = 1,        /* variables were added [set of variables] */
  StateChange_VarsAltered = 2,      /* values changed [SV_ZONELIST, SV_VARLIST] */
  StateChange_ZonesAdded = 3,       /* zones were added [set of zones] */
  StateChange_ZonesDeleted = 4,     /* zones were deleted [set of zones] */
  StateChange_NodeMapsAltered = 5,  /* connectivity changed [set of zones] */
  StateChange_FrameDeleted = 6,     /* a frame is gone, or its plot type ceased to apply */
  StateChange_Style = 7,            /* a style setting changed [up to three style parameters] */
  StateChange_DataSetReset = 8,     /* a data set was read into the active frame */
  StateChange_NewLayout = 9,        /* everything was closed; every data set is gone */
  StateChange_View = 10,            /* the view was translated or zoomed */
  StateChange_SolutionTime = 11,    /* the current solution time changed */
  StateChange_QuitHost = 15,        /* the host is about to quit */
  StateChange_VarsDeleted = 17,     /* variables were deleted [set of variables] */
  StateChange_MouseModeUpdate = 25, /* the mouse mode changed */
  StateChange_GeomCreated = 36,     /* a geometry was created */
  StateChange_DropDialogs = 39,     /* modeless dialogs no longer apply */
  StateChange_VarsReset = 44,       /* variables were renamed or reordered */
  StateChange_NewActiveFrame = 51   /* another frame became active */
};

/* Values of the arguments STATECHANGEMODE and STATECHANGECALLBACKAPI. */
enum { StateChangeMode_v100 = 2 };
enum { StateChangeCallbackAPI_ChangeOnly = 1 };

/* Callbacks. The host calls them on its user-interface thread. None may let an exception out. */
typedef void (*QelAddOnInit_pf)(void); /* InitQelAddOn113 */
typedef void (*QelMenuCallback_pf)(void);
/* errMsg receives a host-allocated string that the host takes over. */
typedef bool (*QelMacroCommandCallback_pf)(const char* command, char** errMsg);
typedef void (*QelStateChangeCallback_pf)(QelStateChange_t change);
typedef void (*QelOnIdleCallback_pf)(ArbParam_t clientData);
typedef void (*QelProbeCallback_pf)(bool isNearestPoint); /* true: CTRL was held */
typedef void (*QelGUIVoidCallback_pf)(void); /* button, init, close, help, spin up, down */
typedef void (*QelGUIIntCallback_pf)(LgIndex_t value); /* toggle 0/1; item, button or page from 1 */
typedef bool (*QelGUITextCallback_pf)(const char* text);
/* The raw accessors: the one place where an index counts from 0. */
typedef double (*QelFieldGet_pf)(const QelFieldData* ref, LgIndex_t offset);
typedef void (*QelFieldSet_pf)(QelFieldData* ref, LgIndex_t offset, double value);

#endif
