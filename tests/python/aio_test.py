"""The module beside asyncio, as in a notebook."""

import asyncio
import concurrent.futures
import unittest

import pcd
from support import UNTIL, SceneTest, camera, scene


class Asyncio(SceneTest):
    def run_async(self, coroutine):
        return asyncio.run(asyncio.wait_for(coroutine, UNTIL))

    def test_a_loop_gets_all_frames_while_other_tasks_run(self):
        async def count(ticks):
            while True:
                ticks.append(1)
                await asyncio.sleep(0.001)

        async def take():
            ticks = []
            other = asyncio.create_task(count(ticks))
            with pcd.open() as opened:
                frames = [frame async for frame in opened.astream(30)]
            other.cancel()
            return frames, len(ticks)
        frames, ticks = self.run_async(take())
        self.assertEqual([*range(30)], [frame.index for frame in frames])
        self.assertGreater(ticks, 5)

    def test_two_cameras_stream_at_once(self):
        self.load(scene(camera("one"), camera("two")))

        async def take(name):
            with pcd.open(name) as opened:
                return [frame.sequence async for frame in opened.astream(20)]

        async def both():
            return await asyncio.gather(take(0), take(1))
        first, second = self.run_async(both())
        self.assertEqual((20, 20), (len(first), len(second)))

    def test_an_unplugged_camera_ends_the_loop(self):
        self.load(scene(faults=[{"do": "unplug", "camera": "cam-1", "afterFrames": 5}]))

        async def take():
            with pcd.open() as opened:
                async with opened.astream() as stream:
                    async for _ in stream:
                        pass
        with self.assertRaises(pcd.UnpluggedError):
            self.run_async(take())

    def test_a_cancelled_task_stops_the_camera(self):
        async def take():
            with pcd.open() as opened:
                self.simulator.hold("cam-1")
                with self.assertRaises(asyncio.TimeoutError):
                    async with opened.astream() as stream:
                        await asyncio.wait_for(anext(stream), 0.2)
                self.simulator.hold("cam-1", False)
                return len([*opened.stream(2)])
        self.assertEqual(2, self.run_async(take()))

    def test_a_loop_that_is_cancelled_while_frames_come_ends_and_closes_its_stream(self):
        async def take(opened):
            async for _ in opened.astream():
                pass

        async def cancel_often():
            kept = []
            with pcd.open() as opened:
                for wait in range(20):  # at any moment between two frames
                    task = asyncio.create_task(take(opened))
                    await asyncio.sleep(0.02 + wait / 2000)
                    task.cancel()
                    try:
                        await asyncio.wait_for(task, UNTIL)
                    except asyncio.CancelledError as error:
                        kept.append(error)  # and with its traceback the stream
                return len(kept), len([*opened.stream(2)])
        self.assertEqual((20, 2), self.run_async(cancel_often()))

    def test_a_single_wait_that_is_cancelled_leaves_the_stream(self):
        async def take():
            with pcd.open() as opened:
                self.simulator.hold("cam-1")
                stream = opened.astream()
                with self.assertRaises(asyncio.TimeoutError):
                    await asyncio.wait_for(anext(stream), 0.05)
                self.simulator.hold("cam-1", False)
                return (await anext(stream)).index
        self.assertEqual(0, self.run_async(take()))

    def test_a_single_wait_after_a_loop_leaves_the_stream_too(self):
        async def take():
            with pcd.open() as opened:
                stream = opened.astream()
                async for first in stream:
                    break
                self.simulator.hold("cam-1")
                with self.assertRaises(asyncio.TimeoutError):
                    while True:  # some may have come before the camera was held
                        await asyncio.wait_for(anext(stream), 0.05)
                self.simulator.hold("cam-1", False)
                async for second in stream:
                    return second.index - first.index
        self.assertGreater(self.run_async(take()), 0)

    def test_a_slow_task_loses_frames_by_number(self):
        async def take():
            with pcd.open() as opened:
                async with opened.astream(queue=2) as stream:
                    await anext(stream)
                    while stream.dropped < 10:
                        await asyncio.sleep(0.01)
                    return stream.waiting
        self.assertEqual(2, self.run_async(take()))

    def test_functions_are_called_for_cameras_while_the_loop_runs(self):
        async def watch():
            pcd.attach()
            seen = asyncio.Event()
            with pcd.on_unplug(lambda _: seen.set()):
                self.pull("cam-1")
                pcd.attach()
                await seen.wait()
        self.run_async(watch())
        self.assertEqual([], pcd.cameras())

    def test_a_loop_of_another_thread_is_refused_each_time(self):
        async def attach():
            for _ in range(2):
                with self.assertRaises(pcd.ThreadError):
                    pcd.attach()
            return "refused"
        with concurrent.futures.ThreadPoolExecutor(1) as thread:
            self.assertEqual("refused", thread.submit(self.run_async, attach()).result())


if __name__ == "__main__":
    unittest.main()
