/* SPDX-License-Identifier: MIT
 *
 * A client in C, without Qt and without an event loop: the SDK's header is a C header, and the
 * simulated cameras need no application object. */
#include <toupcam/toupcam.h>

#include <pthread.h>
#include <stdio.h>

static pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
static pthread_cond_t arrived = PTHREAD_COND_INITIALIZER;
static int frames = 0;
static int width = 0;

static void onData(const void* data, const BITMAPINFOHEADER* header, int isSnapshot,
                   void* context) {
    (void)isSnapshot;
    (void)context;
    pthread_mutex_lock(&mutex);
    frames += data != NULL;
    width = header ? header->biWidth : 0;
    pthread_cond_signal(&arrived);
    pthread_mutex_unlock(&mutex);
}

static int failed(const char* what) {
    fprintf(stderr, "failed: %s\n", what);
    return 1;
}

int main(void) {
    ToupcamDeviceV2 cameras[TOUPCAM_MAX];
    if (Toupcam_EnumV2(cameras) != 2)
        return failed("two cameras");
    HToupcam camera = Toupcam_Open(cameras[1].id);
    if (!camera)
        return failed("open");
    if (FAILED(Toupcam_put_eSize(camera, 1)))
        return failed("resolution");
    if (FAILED(Toupcam_StartPushMode(camera, onData, NULL)))
        return failed("start");
    pthread_mutex_lock(&mutex);
    while (frames < 3)
        pthread_cond_wait(&arrived, &mutex);
    pthread_mutex_unlock(&mutex);
    if (FAILED(Toupcam_Stop(camera)))
        return failed("stop");
    Toupcam_Close(camera);
    return width == 640 ? 0 : failed("width");
}
