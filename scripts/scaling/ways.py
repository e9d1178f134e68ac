"""The pipelines of docs/scale.md: how pictures travel from a camera to the viewer."""

from dataclasses import dataclass

QUEUED = 8  # frames that may wait in pcdsrc
CAMERA = (f"pcdsrc name=camera sdk=sim scene={{scene}} queue-size={QUEUED} ! videoconvert "
          "! video/x-raw,format=I420")
RTP = "application/x-rtp,media=video,clock-rate=90000,"
JPEG_RTP, VP8_RTP = RTP + "encoding-name=JPEG,payload=26", RTP + "encoding-name=VP8,payload=96"
PACKET = 1300  # bytes of RTP
PACKETS = f"timestamp-offset=0 perfect-rtptime=false mtu={PACKET}"
UDP_OUT = "udpsink sync=false host={host} port={port}"
UDP_IN = "udpsrc port={{port}} caps={caps} ! rtpjitterbuffer latency={{latency}}"
VP8_OUT, VP8_IN = f"rtpvp8pay pt=96 {PACKETS}", "rtpvp8depay name=depay wait-for-keyframe=true ! vp8dec"
VP8 = "vp8enc deadline=1 cpu-used=8 keyframe-max-dist=15 target-bitrate={bits}"
SCALED = "videoconvertscale ! video/x-raw,format=I420,width={width},height={height}"


@dataclass(frozen=True)
class Way:
    """An encoder and a protocol, at both ends."""

    name: str
    encoder: str
    sending: str
    receiving: str
    is_called: bool = False  # the viewer calls the camera, again if need be; else the camera sends
    is_udp: bool = True  # what a bad line is made for

    def sender(self, scene, bits, **where):
        """The pipeline of a computer with a camera."""
        return " ! ".join((CAMERA.format(scene=scene), self.encoder.format(bits=bits),
                           "identity name=encoded silent=true", self.sending.format(**where)))

    def receiver(self, width, height, **where):
        """The viewer's pipeline for one camera, up to the picture in the size that is shown."""
        return self.receiving.format(**where) + " ! " + SCALED.format(width=width, height=height)


WAYS = {way.name: way for way in (
    Way("rtp-jpeg", "jpegenc", f"rtpjpegpay pt=26 {PACKETS} ! {UDP_OUT}",
        f"{UDP_IN.format(caps=JPEG_RTP)} ! rtpjpegdepay name=depay ! jpegdec"),
    Way("rtp-vp8", VP8, f"{VP8_OUT} ! {UDP_OUT}", f"{UDP_IN.format(caps=VP8_RTP)} ! {VP8_IN}"),
    Way("tcp-jpeg", "jpegenc",
        f"rtpjpegpay pt=26 {PACKETS} ! rtpstreampay ! tcpclientsink sync=false host={{host}} port={{port}}",
        f"tcpserversrc host=0.0.0.0 port={{port}} ! {JPEG_RTP.replace('x-rtp', 'x-rtp-stream')} "
        "! rtpstreamdepay ! rtpjpegdepay name=depay ! jpegdec", is_udp=False),
    # A packet of RTP is a message of SRT, so pictures begin anywhere in the stream.
    Way("srt-vp8", VP8, f"{VP8_OUT} ! srtsink sync=false wait-for-connection=false "
        "uri=srt://{host}:{port}?mode=listener latency={latency}",
        "srtsrc auto-reconnect=false uri=srt://{host}:{port} latency={latency} "
        f"! {VP8_RTP} ! {VP8_IN}", True),
)}

# What a camera and the conversion cost without any network.
NOTHING = CAMERA + " ! identity name=encoded silent=true ! fakesink"
