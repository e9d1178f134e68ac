/* SPDX-License-Identifier: MIT
 *
 * The camera SDK's C interface, as far as this project uses it: the functions, records, options,
 * flags, events and result codes of libtoupcam, with the field order and widths of the published
 * library (Linux x86-64), so that the maker's own libtoupcam.so and the simulated one are
 * interchangeable at run time.
 *
 * Conventions of the SDK
 *  - A function returns an HRESULT: negative is failure, 0 (S_OK) or positive is success; a few
 *    return a count or a maximum there.
 *  - Setters and getters may be called from any thread; Toupcam_Stop and Toupcam_Close block until
 *    a callback in progress has returned, so neither may be called from inside a callback.
 *  - Callbacks run on threads of the SDK and must not let an exception out.
 *  - Pixel rows are padded to a multiple of 4 bytes (device-independent bitmap rows), top row
 * first.
 */
#ifndef TOUPCAM_TOUPCAM_H
#define TOUPCAM_TOUPCAM_H

#ifdef __cplusplus
extern "C" {
#endif

#ifndef TOUPCAM_API /* a library that forwards the functions declares them hidden instead */
#define TOUPCAM_API(type) __attribute__((visibility("default"))) type
#endif

/* ---- Results ------------------------------------------------------------------------------- */

typedef int HRESULT;

#define S_OK ((HRESULT)0x00000000)           /* done */
#define S_FALSE ((HRESULT)0x00000001)        /* done, with nothing to do */
#define E_UNEXPECTED ((HRESULT)0x8000ffff)   /* not in this state (for example: not started) */
#define E_NOTIMPL ((HRESULT)0x80004001)      /* this model or library cannot */
#define E_POINTER ((HRESULT)0x80004003)      /* a pointer that must not be null is */
#define E_FAIL ((HRESULT)0x80004005)         /* any other failure */
#define E_ACCESSDENIED ((HRESULT)0x80070005) /* opened elsewhere, or no permission */
#define E_OUTOFMEMORY ((HRESULT)0x8007000e)  /* no memory */
#define E_INVALIDARG ((HRESULT)0x80070057)   /* an argument is out of range */
#define E_GEN_FAILURE ((HRESULT)0x8007001f)  /* the camera is gone or does not answer */
#define E_WRONG_THREAD ((HRESULT)0x8001010e) /* called from a thread that must not call it */
#define E_PENDING ((HRESULT)0x8000000a)      /* no data yet */

#define SUCCEEDED(hr) (((HRESULT)(hr)) >= 0)
#define FAILED(hr) (((HRESULT)(hr)) < 0)

/* ---- Records ------------------------------------------------------------------------------- */

/* The bitmap header that comes with every pushed frame. */
typedef struct {
    unsigned int biSize;
    int biWidth;
    int biHeight;
    unsigned short biPlanes;
    unsigned short biBitCount; /* 8 grey, 24 colour */
    unsigned int biCompression;
    unsigned int biSizeImage; /* bytes, row padding included */
    int biXPelsPerMeter;
    int biYPelsPerMeter;
    unsigned int biClrUsed;
    unsigned int biClrImportant;
} BITMAPINFOHEADER;

/* One opened camera. Opaque: only its address counts. */
typedef struct Toupcam_t {
    int unused;
} Toupcam_t;
typedef Toupcam_t* HToupcam;
typedef Toupcam_t* HToupCam;

#define TOUPCAM_MAX 128          /* the most cameras one enumeration returns */
#define TOUPCAM_MODEL_MAX_RES 16 /* the most resolutions of a model */

typedef struct {
    unsigned width;
    unsigned height;
} ToupcamResolution;

typedef struct {
    const char* name;        /* model name */
    unsigned long long flag; /* TOUPCAM_FLAG_… */
    unsigned maxspeed;       /* number of speed levels - 1 */
    unsigned preview;        /* number of preview resolutions */
    unsigned still;          /* number of still resolutions */
    unsigned maxfanspeed;    /* highest fan level */
    unsigned ioctrol;        /* number of input/output controls (spelled as published) */
    float xpixsz;            /* physical pixel width, micrometres */
    float ypixsz;            /* physical pixel height, micrometres */
    ToupcamResolution res[TOUPCAM_MODEL_MAX_RES];
} ToupcamModelV2;

typedef struct {
    char displayname[64];
    char id[64]; /* opaque; what Toupcam_Open takes */
    const ToupcamModelV2* model;
} ToupcamDeviceV2;

typedef struct {
    unsigned width;
    unsigned height;
    unsigned flag;                /* TOUPCAM_FRAMEINFO_FLAG_… */
    unsigned seq;                 /* frame number, counted by the camera */
    unsigned long long timestamp; /* microseconds */
} ToupcamFrameInfoV2;

#define TOUPCAM_FRAMEINFO_FLAG_SEQ 0x00000001       /* seq is valid */
#define TOUPCAM_FRAMEINFO_FLAG_TIMESTAMP 0x00000002 /* timestamp is valid */

/* ---- Model flags --------------------------------------------------------------------------- */

#define TOUPCAM_FLAG_MONO 0x00000010ull              /* monochrome sensor */
#define TOUPCAM_FLAG_USB30 0x00000040ull             /* USB 3.0 camera */
#define TOUPCAM_FLAG_TEC_ONOFF 0x00000080ull         /* thermo-electric cooler */
#define TOUPCAM_FLAG_USB30_OVER_USB20 0x00000100ull  /* USB 3.0 camera on a USB 2.0 link */
#define TOUPCAM_FLAG_FAN 0x00010000ull               /* cooling fan */
#define TOUPCAM_FLAG_TRIGGER_SOFTWARE 0x00080000ull  /* software trigger */
#define TOUPCAM_FLAG_TRIGGER_EXTERNAL 0x00100000ull  /* external (hardware) trigger */
#define TOUPCAM_FLAG_BANDWIDTH 0x0000004000000000ull /* bit 38: link bandwidth can be limited */
#define TOUPCAM_FLAG_USB32_OVER_USB30 0x0800000000000000ull /* bit 59: USB 3.2 on USB 3.0 */

/* ---- Options of Toupcam_put_Option and Toupcam_get_Option ----------------------------------- */

#define TOUPCAM_OPTION_PROCESSMODE 0x03     /* where pixels are processed: 0 is the SDK's choice */
#define TOUPCAM_OPTION_RAW 0x04             /* 1: raw sensor data */
#define TOUPCAM_OPTION_FAN 0x07             /* 0 off, 1 … maximum: fan level */
#define TOUPCAM_OPTION_TEC 0x08             /* 0 off, 1 on */
#define TOUPCAM_OPTION_TRIGGER 0x0b         /* 0 video, 1 software trigger, 2 external trigger */
#define TOUPCAM_OPTION_COLORMATIX 0x0d      /* colour matrix, 0 or 1 (spelled as published) */
#define TOUPCAM_OPTION_WBGAIN 0x0e          /* white-balance gain, 0 or 1 */
#define TOUPCAM_OPTION_FRAMERATE 0x11       /* frames a second, 0: no limit */
#define TOUPCAM_OPTION_MULTITHREAD 0x16     /* 1: the SDK may use several threads */
#define TOUPCAM_OPTION_BINNING 0x17         /* factor; + 0x80: average instead of sum */
#define TOUPCAM_OPTION_ROTATE 0x18          /* degrees clockwise: 0, 90, 180, 270 */
#define TOUPCAM_OPTION_TEC_VOLTAGE 0x20     /* cooler voltage now, 0.1 V; read only */
#define TOUPCAM_OPTION_TEC_VOLTAGE_MAX 0x21 /* highest cooler voltage, 0.1 V */
#define TOUPCAM_OPTION_BYTEORDER 0x2a       /* 0 red first, 1 blue first */
#define TOUPCAM_OPTION_BANDWIDTH 0x2e       /* per cent of the link, 1 … 100 */

/* ---- Events -------------------------------------------------------------------------------- */

#define TOUPCAM_EVENT_EXPOSURE 0x0001        /* exposure time or gain changed */
#define TOUPCAM_EVENT_IMAGE 0x0004           /* live frame ready to be pulled */
#define TOUPCAM_EVENT_STILLIMAGE 0x0005      /* still ready to be pulled */
#define TOUPCAM_EVENT_ERROR 0x0080           /* generic streaming error */
#define TOUPCAM_EVENT_DISCONNECTED 0x0081    /* camera gone */
#define TOUPCAM_EVENT_NOFRAMETIMEOUT 0x0082  /* no frame in time */
#define TOUPCAM_EVENT_NOPACKETTIMEOUT 0x0085 /* no packet in time */

/* ---- Callbacks ----------------------------------------------------------------------------- */

typedef void (*PTOUPCAM_HOTPLUG)(void* ctxHotPlug);
typedef void (*PTOUPCAM_DATA_CALLBACK)(const void* pData, const BITMAPINFOHEADER* pHeader,
                                       int bSnap, void* ctxData);
typedef void (*PTOUPCAM_EVENT_CALLBACK)(unsigned nEvent, void* ctxEvent);
typedef void (*PITOUPCAM_EXPOSURE_CALLBACK)(void* ctxExpo);
typedef void (*PITOUPCAM_TEMPTINT_CALLBACK)(const int nTemp, const int nTint, void* ctxTT);

/* ---- Discovery and session ------------------------------------------------------------------ */

/* Fills pti with the cameras attached now and returns their number. */
TOUPCAM_API(unsigned) Toupcam_EnumV2(ToupcamDeviceV2 pti[TOUPCAM_MAX]);
/* Registers the one hot-plug callback of the process; null unregisters it. */
TOUPCAM_API(void) Toupcam_HotPlug(PTOUPCAM_HOTPLUG funcHotPlug, void* ctxHotPlug);
/* Opens the camera with this id; null if it is gone, open already, or refused. */
TOUPCAM_API(HToupcam) Toupcam_Open(const char* camId);
/* Stops and closes; the handle is invalid afterwards. Null is allowed. */
TOUPCAM_API(void) Toupcam_Close(HToupcam h);
TOUPCAM_API(HRESULT) Toupcam_get_SerialNumber(HToupcam h, char sn[32]);

/* ---- Stream --------------------------------------------------------------------------------- */

TOUPCAM_API(HRESULT)
Toupcam_StartPushMode(HToupcam h, PTOUPCAM_DATA_CALLBACK funcData, void* ctxData);
TOUPCAM_API(HRESULT)
Toupcam_StartPullModeWithCallback(HToupcam h, PTOUPCAM_EVENT_CALLBACK funcEvent, void* ctxEvent);
TOUPCAM_API(HRESULT) Toupcam_Stop(HToupcam h);
/* Requests one still at a resolution; it arrives as frames do, pushed or pulled. */
TOUPCAM_API(HRESULT) Toupcam_Snap(HToupcam h, unsigned nResolutionIndex);
/* nNumber frames; 0 stops, 0xffff runs until stopped. */
TOUPCAM_API(HRESULT) Toupcam_Trigger(HToupcam h, unsigned short nNumber);
/* Copies the newest frame with `bits` (24 or 32) per pixel; a null buffer queries pInfo only. */
TOUPCAM_API(HRESULT)
Toupcam_PullImageV2(HToupcam h, void* pImageData, int bits, ToupcamFrameInfoV2* pInfo);
TOUPCAM_API(HRESULT)
Toupcam_PullStillImageV2(HToupcam h, void* pImageData, int bits, ToupcamFrameInfoV2* pInfo);

/* ---- Resolution and region ------------------------------------------------------------------ */

TOUPCAM_API(HRESULT) Toupcam_get_ResolutionNumber(HToupcam h);
TOUPCAM_API(HRESULT)
Toupcam_get_Resolution(HToupcam h, unsigned nResolutionIndex, int* pWidth, int* pHeight);
TOUPCAM_API(HRESULT) Toupcam_put_eSize(HToupcam h, unsigned nResolutionIndex);
TOUPCAM_API(HRESULT) Toupcam_get_eSize(HToupcam h, unsigned* pnResolutionIndex);
/* Size of the frames as delivered: after region, binning and rotation. */
TOUPCAM_API(HRESULT) Toupcam_get_FinalSize(HToupcam h, int* pWidth, int* pHeight);
TOUPCAM_API(HRESULT)
Toupcam_put_Roi(HToupcam h, unsigned xOffset, unsigned yOffset, unsigned xWidth, unsigned yHeight);
TOUPCAM_API(HRESULT)
Toupcam_get_Roi(HToupcam h, unsigned* pxOffset, unsigned* pyOffset, unsigned* pxWidth,
                unsigned* pyHeight);

/* ---- Settings ------------------------------------------------------------------------------- */

TOUPCAM_API(HRESULT) Toupcam_put_Option(HToupcam h, unsigned iOption, int iValue);
TOUPCAM_API(HRESULT) Toupcam_get_Option(HToupcam h, unsigned iOption, int* piValue);
TOUPCAM_API(HRESULT) Toupcam_put_RealTime(HToupcam h, int val);

TOUPCAM_API(HRESULT) Toupcam_get_MaxSpeed(HToupcam h); /* returns the maximum */
TOUPCAM_API(HRESULT) Toupcam_put_Speed(HToupcam h, unsigned short nSpeed);
TOUPCAM_API(HRESULT) Toupcam_get_Speed(HToupcam h, unsigned short* pSpeed);

TOUPCAM_API(HRESULT)
Toupcam_put_ExpoCallback(HToupcam h, PITOUPCAM_EXPOSURE_CALLBACK fnExpo, void* ctxExpo);
TOUPCAM_API(HRESULT) Toupcam_get_AutoExpoEnable(HToupcam h, int* bAutoExposure);
TOUPCAM_API(HRESULT) Toupcam_put_AutoExpoEnable(HToupcam h, int bAutoExposure);
TOUPCAM_API(HRESULT) Toupcam_get_AutoExpoTarget(HToupcam h, unsigned short* Target);
TOUPCAM_API(HRESULT) Toupcam_put_AutoExpoTarget(HToupcam h, unsigned short Target);
TOUPCAM_API(HRESULT) Toupcam_get_ExpoTime(HToupcam h, unsigned* Time); /* microseconds */
TOUPCAM_API(HRESULT) Toupcam_put_ExpoTime(HToupcam h, unsigned Time);
TOUPCAM_API(HRESULT)
Toupcam_get_ExpTimeRange(HToupcam h, unsigned* nMin, unsigned* nMax, unsigned* nDef);
TOUPCAM_API(HRESULT) Toupcam_get_ExpoAGain(HToupcam h, unsigned short* Gain); /* per cent */
TOUPCAM_API(HRESULT) Toupcam_put_ExpoAGain(HToupcam h, unsigned short Gain);
TOUPCAM_API(HRESULT)
Toupcam_get_ExpoAGainRange(HToupcam h, unsigned short* nMin, unsigned short* nMax,
                           unsigned short* nDef);

TOUPCAM_API(HRESULT)
Toupcam_AwbOnePush(HToupcam h, PITOUPCAM_TEMPTINT_CALLBACK fnTTProc, void* ctxTT);
TOUPCAM_API(HRESULT) Toupcam_put_TempTint(HToupcam h, int nTemp, int nTint);
TOUPCAM_API(HRESULT) Toupcam_get_TempTint(HToupcam h, int* nTemp, int* nTint);

TOUPCAM_API(HRESULT) Toupcam_put_Hue(HToupcam h, int Hue);
TOUPCAM_API(HRESULT) Toupcam_get_Hue(HToupcam h, int* Hue);
TOUPCAM_API(HRESULT) Toupcam_put_Saturation(HToupcam h, int Saturation);
TOUPCAM_API(HRESULT) Toupcam_get_Saturation(HToupcam h, int* Saturation);
TOUPCAM_API(HRESULT) Toupcam_put_Brightness(HToupcam h, int Brightness);
TOUPCAM_API(HRESULT) Toupcam_get_Brightness(HToupcam h, int* Brightness);
TOUPCAM_API(HRESULT) Toupcam_put_Contrast(HToupcam h, int Contrast);
TOUPCAM_API(HRESULT) Toupcam_get_Contrast(HToupcam h, int* Contrast);
TOUPCAM_API(HRESULT) Toupcam_put_Gamma(HToupcam h, int Gamma);
TOUPCAM_API(HRESULT) Toupcam_get_Gamma(HToupcam h, int* Gamma);

TOUPCAM_API(HRESULT) Toupcam_put_Chrome(HToupcam h, int bChrome); /* 1: monochrome */
TOUPCAM_API(HRESULT) Toupcam_get_Chrome(HToupcam h, int* bChrome);
TOUPCAM_API(HRESULT) Toupcam_put_VFlip(HToupcam h, int bVFlip);
TOUPCAM_API(HRESULT) Toupcam_get_VFlip(HToupcam h, int* bVFlip);
TOUPCAM_API(HRESULT) Toupcam_put_HFlip(HToupcam h, int bHFlip);
TOUPCAM_API(HRESULT) Toupcam_get_HFlip(HToupcam h, int* bHFlip);
TOUPCAM_API(HRESULT) Toupcam_put_Negative(HToupcam h, int bNegative);
TOUPCAM_API(HRESULT) Toupcam_get_Negative(HToupcam h, int* bNegative);

TOUPCAM_API(HRESULT)
Toupcam_put_HZ(HToupcam h, int nHZ); /* 0: 60 Hz, 1: 50 Hz, 2: direct current */
TOUPCAM_API(HRESULT) Toupcam_get_HZ(HToupcam h, int* nHZ);

TOUPCAM_API(HRESULT) Toupcam_get_FanMaxSpeed(HToupcam h); /* returns the maximum */
TOUPCAM_API(HRESULT) Toupcam_put_Temperature(HToupcam h, short nTemperature); /* 0.1 degree C */
TOUPCAM_API(HRESULT) Toupcam_get_Temperature(HToupcam h, short* pTemperature);

#ifdef __cplusplus
}
#endif

#endif
