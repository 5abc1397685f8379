// Identifiers of the module's resources, for the resource compiler and for the code that uses them.
#pragma once

#define IDR_MANIFEST 2

#define IDD_CAPTURE_DIALOG 2007

#define ID_RETURN_IMAGES 1
#define ID_CANCEL 2
#define ID_OPTIONS 2000
#define ID_DELETE_SELECTED 2006
#define ID_THUMBNAILS 2007
#define ID_ACQUIRE_IMAGE 2010
#define ID_SELECT_SENSOR 2011
#define ID_ACQUIRE_SERIES 2012
#define ID_MANUAL_TRIGGER 2013
#define ID_HELP 2014
#define ID_DELETE_ALL 2020
#define IDC_STATUS_PANEL 2100

#define STATUS_LIST_CLASS "ZyrStatusList"
