<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
<context>
    <name>PCameraTabs</name>
    <message>
        <source>ready</source>
        <translation>готова</translation>
    </message>
    <message>
        <source>open</source>
        <translation>открыта</translation>
    </message>
    <message>
        <source>unplugged</source>
        <translation>отключена</translation>
    </message>
    <message>
        <source>not open</source>
        <translation>не открыта</translation>
    </message>
    <message>
        <source>recording</source>
        <translation>идёт запись</translation>
    </message>
</context>
<context>
    <name>PCallReporter</name>
    <message>
        <source>The camera did not answer for %1 s: %2 had not returned</source>
        <translation>Камера не отвечала %1 с: не завершался вызов %2</translation>
    </message>
</context>
<context>
    <name>PCameraController</name>
    <message>
        <source>Draw the region with the mouse; Esc cancels.</source>
        <translation>Нарисуйте область мышью; Esc отменяет.</translation>
    </message>
    <message>
        <source>Pixel size</source>
        <translation>Размер пиксела</translation>
    </message>
    <message>
        <source>Size of a pixel on the specimen at full resolution, in micrometres (0: no scale bar).
This is the pixel size of the sensor divided by the magnification.</source>
        <translation>Размер пиксела на препарате при полном разрешении, в микрометрах (0: без масштабной линейки).
Это размер на сенсоре, делённый на увеличение.</translation>
    </message>
    <message>
        <source>%1 was unplugged</source>
        <translation>Камера %1 отключена</translation>
    </message>
    <message>
        <source>%1 is plugged in again</source>
        <translation>Камера %1 снова подключена</translation>
    </message>
</context>
<context>
    <name>PCameraListPanel</name>
    <message>
        <source>Double-click a camera to open it.</source>
        <translation>Дважды щёлкните камеру, чтобы открыть её.</translation>
    </message>
    <message>
        <source>Search again</source>
        <translation>Искать снова</translation>
    </message>
    <message>
        <source>Simulated camera</source>
        <translation>Имитация камеры</translation>
    </message>
</context>
<context>
    <name>PCameraPage</name>
    <message>
        <source>Opening %1…</source>
        <translation>Открывается %1…</translation>
    </message>
    <message>
        <source>This camera cannot be opened: %1</source>
        <translation>Эту камеру не удаётся открыть: %1</translation>
    </message>
    <message>
        <source>Waiting for the first picture…</source>
        <translation>Ожидается первый кадр…</translation>
    </message>
    <message>
        <source>The region of this camera cannot be set.</source>
        <translation>У этой камеры нельзя задать область.</translation>
    </message>
    <message>
        <source>The camera does not accept this region.</source>
        <translation>Камера не принимает такую область.</translation>
    </message>
    <message>
        <source>The camera did not accept the region %1; it uses %2.</source>
        <translation>Камера не приняла область %1: действует %2.</translation>
    </message>
    <message>
        <source>This camera is unplugged. Plug it in again to continue with the same settings.</source>
        <translation>Эта камера отключена. Подключите её снова, и она продолжит работу со своими настройками.</translation>
    </message>
    <message>
        <source>This camera is unplugged. Its last picture is shown; plug it in again to continue with the same settings.</source>
        <translation>Эта камера отключена. Последний кадр остаётся на экране; подключите её снова, и она продолжит работу со своими настройками.</translation>
    </message>
    <message>
        <source>Triggered capture: waiting for triggers. Pictures taken: %1</source>
        <translation>Съёмка по триггеру: кадры приходят только по триггеру. Сделано снимков: %1</translation>
    </message>
    <message>
        <source>Triggered capture: run in progress. Pictures taken: %1</source>
        <translation>Съёмка по триггеру: идёт серия. Сделано снимков: %1</translation>
    </message>
    <message>
        <source>The camera did not report its region.</source>
        <translation>Камера не сообщила свою область.</translation>
    </message>
</context>
<context>
    <name>PCapture</name>
    <message>
        <source>Saved %1</source>
        <translation>Сохранено: %1</translation>
    </message>
    <message>
        <source>Taking a still…</source>
        <translation>Делается снимок…</translation>
    </message>
    <message>
        <source>No still taken: %1</source>
        <translation>Снимок не сделан: %1</translation>
    </message>
    <message>
        <source>the camera was unplugged</source>
        <translation>камера отключена</translation>
    </message>
    <message>
        <source>still pictures that had not arrived: %1</source>
        <translation>снимков, которые не были получены: %1</translation>
    </message>
</context>
<context>
    <name>PCaptureDialog</name>
    <message>
        <source>Picture and recording files</source>
        <translation>Файлы снимков и записей</translation>
    </message>
    <message>
        <source>{camera}, {date} and {time} are replaced by camera, date and time, {n} by the first number that gives an unused name.</source>
        <translation>{camera}, {date} и {time} — камера, дата и время, {n} — первый номер, дающий новое имя.</translation>
    </message>
    <message>
        <source>Browse…</source>
        <translation>Обзор…</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Папка:</translation>
    </message>
    <message>
        <source>File names:</source>
        <translation>Имена файлов:</translation>
    </message>
    <message>
        <source>Save stills as:</source>
        <translation>Снимки как:</translation>
    </message>
    <message>
        <source>Next name:</source>
        <translation>Следующее имя:</translation>
    </message>
    <message>
        <source>Capture folder</source>
        <translation>Папка снимков</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not an absolute path</source>
        <translation>«%1» — не абсолютный путь</translation>
    </message>
</context>
<context>
    <name>PChoiceEditor</name>
    <message>
        <source>(unknown)</source>
        <translation>(неизвестно)</translation>
    </message>
</context>
<context>
    <name>PDevice</name>
    <message>
        <source>the device is gone</source>
        <translation>устройства больше нет</translation>
    </message>
    <message>
        <source>the device refused to be linked</source>
        <translation>устройство отказалось подключиться</translation>
    </message>
    <message>
        <source>the device refused to be unlinked</source>
        <translation>устройство отказалось отключиться</translation>
    </message>
    <message>
        <source>the device is not linked</source>
        <translation>устройство не подключено</translation>
    </message>
    <message>
        <source>the stream is already running</source>
        <translation>поток уже идёт</translation>
    </message>
    <message>
        <source>the device refused to start its stream</source>
        <translation>устройство отказалось начать поток</translation>
    </message>
    <message>
        <source>the device refused to stop its stream</source>
        <translation>устройство отказалось остановить поток</translation>
    </message>
    <message>
        <source>the device refused the mode %1</source>
        <translation>устройство отказалось перейти в режим %1</translation>
    </message>
    <message>
        <source>the camera did not report its modes</source>
        <translation>камера не сообщила свои режимы</translation>
    </message>
</context>
<context>
    <name>PDevicePanel</name>
    <message>
        <source>The device is not connected.</source>
        <translation>Устройство не подключено.</translation>
    </message>
    <message>
        <source>No setting matches.</source>
        <translation>Подходящих настроек нет.</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Прочее</translation>
    </message>
</context>
<context>
    <name>PDeviceProfileFile</name>
    <message>
        <source>cannot save &quot;%1&quot;: %2</source>
        <translation>не удалось сохранить «%1»: %2</translation>
    </message>
    <message>
        <source>cannot read &quot;%1&quot;: %2</source>
        <translation>не удалось прочитать «%1»: %2</translation>
    </message>
    <message>
        <source>it is not a file</source>
        <translation>это не файл</translation>
    </message>
    <message>
        <source>it is larger than %1 bytes, too large for a profile</source>
        <translation>больше %1 байт, таких профилей не бывает</translation>
    </message>
    <message>
        <source>the camera no longer answers</source>
        <translation>камера больше не отвечает</translation>
    </message>
    <message>
        <source>the camera has a value that cannot be written</source>
        <translation>у камеры есть значение, которое нельзя записать</translation>
    </message>
    <message>
        <source>the camera did not report its mode</source>
        <translation>камера не сообщила свой режим</translation>
    </message>
</context>
<context>
    <name>PDeviceProfileDiff</name>
    <message>
        <source>the camera did not report its mode</source>
        <translation>камера не сообщила свой режим</translation>
    </message>
</context>
<context>
    <name>PDeviceProfilePlan</name>
    <message>
        <source>these fields</source>
        <translation>эти поля</translation>
    </message>
    <message>
        <source>the fields %1</source>
        <translation>поля %1</translation>
    </message>
    <message>
        <source>one of the fields %1</source>
        <translation>одно из полей %1</translation>
    </message>
    <message>
        <source>one of %1</source>
        <translation>одно из %1</translation>
    </message>
    <message>
        <source>it is an action, which a profile never runs</source>
        <translation>это действие, профиль их не выполняет</translation>
    </message>
    <message>
        <source>profiles do not hold this property</source>
        <translation>профили не хранят это свойство</translation>
    </message>
    <message>
        <source>the text &quot;%1&quot;</source>
        <translation>текстом «%1»</translation>
    </message>
    <message>
        <source>%1 with a decimal point</source>
        <translation>%1 (дробным числом)</translation>
    </message>
    <message>
        <source>these bytes</source>
        <translation>этими байтами</translation>
    </message>
    <message>
        <source>cannot be %1: expected %2</source>
        <translation>не может быть %1: ожидалось %2</translation>
    </message>
    <message>
        <source>the camera already has this value, which is outside its range</source>
        <translation>у камеры уже это значение, вне её диапазона</translation>
    </message>
    <message>
        <source>saved from another camera: %1, serial number %2; this one is %3, serial number %4</source>
        <translation>сохранён с другой камеры: %1, серийный номер %2; эта — %3, серийный номер %4</translation>
    </message>
    <message>
        <source>the camera has no such property</source>
        <translation>у камеры нет такого свойства</translation>
    </message>
    <message>
        <source>it is a region of another mode</source>
        <translation>это область режима, который не установлен</translation>
    </message>
    <message>
        <source>requested %1, the camera has %2</source>
        <translation>запрошено %1, у камеры %2</translation>
    </message>
    <message>
        <source>the camera did not report its modes</source>
        <translation>камера не сообщила свои режимы</translation>
    </message>
    <message>
        <source>the camera did not report it</source>
        <translation>камера этого не сообщила</translation>
    </message>
    <message>
        <source>the camera no longer answers</source>
        <translation>камера больше не отвечает</translation>
    </message>
    <message>
        <source>none, because the camera has no modes</source>
        <translation>ничего, так как у камеры нет режимов</translation>
    </message>
    <message>
        <source>the camera did not report whether it took it</source>
        <translation>камера не сообщила, приняла ли она это</translation>
    </message>
</context>
<context>
    <name>PEditorMenu</name>
    <message>
        <source>Reset to default</source>
        <translation>Вернуть значение по умолчанию</translation>
    </message>
    <message>
        <source>This setting has no default.</source>
        <translation>У этой настройки нет значения по умолчанию.</translation>
    </message>
    <message>
        <source>Reset to default (%1)</source>
        <translation>Вернуть значение по умолчанию (%1)</translation>
    </message>
</context>
<context>
    <name>PExposureText</name>
    <message>
        <source>gain %1</source>
        <translation>усиление %1</translation>
    </message>
    <message>
        <source>auto</source>
        <translation>авто</translation>
    </message>
    <message>
        <source>%1 µs</source>
        <translation>%1 мкс</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 мс</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 с</translation>
    </message>
</context>
<context>
    <name>PFrameRecorder</name>
    <message>
        <source>the disk is slower than the camera: %1 MB are waiting to be written</source>
        <translation>диск медленнее камеры: записи ждут %1 МБ</translation>
    </message>
</context>
<context>
    <name>PFrameWriteQueue</name>
    <message>
        <source>cannot save frame %1: %2</source>
        <translation>не удалось сохранить кадр %1: %2</translation>
    </message>
</context>
<context>
    <name>PFramesPanel</name>
    <message>
        <source>Outcome</source>
        <translation>Что стало с кадрами</translation>
    </message>
    <message>
        <source>Frames</source>
        <translation>Кадры</translation>
    </message>
</context>
<context>
    <name>PCompositeFields</name>
    <message>
        <source>on or off</source>
        <translation>on или off</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>число</translation>
    </message>
    <message>
        <source>a whole number of %1 bits</source>
        <translation>целое число из %1 бит</translation>
    </message>
    <message>
        <source>an unsigned whole number of %1 bits</source>
        <translation>целое число из %1 бит без знака</translation>
    </message>
    <message>
        <source>a number from %1 to %2</source>
        <translation>число от %1 до %2</translation>
    </message>
    <message>
        <source>a whole number from %1 to %2</source>
        <translation>целое число от %1 до %2</translation>
    </message>
</context>
<context>
    <name>PHangWindow</name>
    <message>
        <source>The camera does not answer</source>
        <translation>Камера не отвечает</translation>
    </message>
    <message>
        <source>&amp;End pcdview</source>
        <translation>&amp;Завершить pcdview</translation>
    </message>
    <message>
        <source>&amp;Keep waiting</source>
        <translation>&amp;Ждать дальше</translation>
    </message>
    <message>
        <source>pcdview waits until this call to the camera returns; its window cannot react before:</source>
        <translation>pcdview ждёт, пока завершится этот вызов камеры; до тех пор его окно не отвечает:</translation>
    </message>
    <message>
        <source>pcdview is ending</source>
        <translation>pcdview завершается</translation>
    </message>
    <message>
        <source>&amp;End at once</source>
        <translation>&amp;Завершить сразу</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Закрыть</translation>
    </message>
    <message>
        <source>So far it has taken %1.</source>
        <translation>Он длится уже %1.</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 с</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 мин %2 с</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 ч %2 мин</translation>
    </message>
    <message>
        <source>Often the camera answers after all, and this message disappears. If not, check its cable: unplugging it may end the call. When you end pcdview, recordings and pictures are completed before.</source>
        <translation>Часто камера всё же отвечает, и это сообщение исчезает. Если нет, проверьте её кабель: вызов может завершиться, если его отсоединить. Если завершить pcdview, записи и снимки будут дописаны.</translation>
    </message>
    <message>
        <source>If the call does not return within %1, pcdview completes recordings and pictures and ends without the camera.</source>
        <translation>Если вызов не завершится за %1, pcdview допишет записи и снимки и завершится без камеры.</translation>
    </message>
    <message>
        <source>Recordings and pictures are being completed; then pcdview ends.</source>
        <translation>Записи и снимки дописываются; затем pcdview завершится.</translation>
    </message>
    <message>
        <source>If you end it at once, they stay incomplete.</source>
        <translation>Если завершить его сразу, они останутся неполными.</translation>
    </message>
</context>
<context>
    <name>PHelpController</name>
    <message>
        <source>Keyboard and mouse</source>
        <translation>Клавиатура и мышь</translation>
    </message>
    <message>
        <source>About pcdview</source>
        <translation>О программе pcdview</translation>
    </message>
</context>
<context>
    <name>PMenuBar</name>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Файл</translation>
    </message>
    <message>
        <source>&amp;Camera</source>
        <translation>&amp;Камера</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Вид</translation>
    </message>
    <message>
        <source>&amp;Panels</source>
        <translation>&amp;Панели</translation>
    </message>
    <message>
        <source>&amp;Colours</source>
        <translation>&amp;Цвета</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Справка</translation>
    </message>
    <message>
        <source>Same as &amp;system</source>
        <translation>Как в &amp;системе</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>С&amp;ветлые</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Тёмные</translation>
    </message>
</context>
<context>
    <name>PPictureController</name>
    <message>
        <source>Saving pictures</source>
        <translation>Сохранение снимков</translation>
    </message>
    <message>
        <source>Pictures still to be saved: %1. After the last one, the window closes.</source>
        <translation>Осталось сохранить снимков: %1. Затем окно закроется.</translation>
    </message>
    <message>
        <source>There is no picture yet.</source>
        <translation>Изображения ещё нет.</translation>
    </message>
    <message>
        <source>Save displayed picture</source>
        <translation>Сохранить показанное</translation>
    </message>
    <message>
        <source>PNG (*.png);;TIFF (*.tif *.tiff)</source>
        <translation>PNG (*.png);;TIFF (*.tif *.tiff)</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Камера</translation>
    </message>
    <message>
        <source>Still pictures</source>
        <translation>Снимки</translation>
    </message>
    <message>
        <source>Still pictures that have not arrived yet: %1. Close without them?</source>
        <translation>Ещё не полученных снимков: %1. Закрыть, не дожидаясь их?</translation>
    </message>
</context>
<context>
    <name>PProfileController</name>
    <message>
        <source>Load profile</source>
        <translation>Загрузить профиль</translation>
    </message>
    <message>
        <source>Camera profiles</source>
        <translation>Профили камер</translation>
    </message>
    <message>
        <source>Connect a camera to apply “%1”.</source>
        <translation>Подключите камеру, чтобы применить «%1».</translation>
    </message>
    <message>
        <source>Apply the settings in “%1” to %2?</source>
        <translation>Применить настройки из «%1» к камере %2?</translation>
    </message>
    <message>
        <source>Save profile</source>
        <translation>Сохранить профиль</translation>
    </message>
    <message>
        <source>The camera was unplugged: nothing was saved.</source>
        <translation>Камера отключена: ничего не сохранено.</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>Сохранено: %1</translation>
    </message>
</context>
<context>
    <name>PRecordController</name>
    <message>
        <source>Recording to %1</source>
        <translation>Идёт запись: %1</translation>
    </message>
    <message>
        <source>Recording not started: %1</source>
        <translation>Запись не начата: %1</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Запись</translation>
    </message>
    <message>
        <source>Frames still to be written: %1. After the last one, the window closes.</source>
        <translation>Осталось записать кадров: %1. Затем окно закроется.</translation>
    </message>
    <message>
        <source>Stop the recording of %1?</source>
        <translation>Остановить запись с камеры %1?</translation>
    </message>
    <message>
        <source>Recording in progress: %1. Stop recording and close?</source>
        <translation>Идёт запись: %1. Завершить её и закрыть?</translation>
    </message>
    <message>
        <source>Recording in progress: %1. Stop recording and the live picture?</source>
        <translation>Идёт запись: %1. Завершить её и остановить живое изображение?</translation>
    </message>
    <message>
        <source>Recording in progress: %1. Stop recording and change the resolution?</source>
        <translation>Идёт запись: %1. Завершить её и сменить разрешение?</translation>
    </message>
    <message>
        <source>Recording in progress: %1. Stop recording and change the region?</source>
        <translation>Идёт запись: %1. Завершить её и сменить область?</translation>
    </message>
    <message>
        <source>Recording in progress: %1. Stop recording and change the binning?</source>
        <translation>Идёт запись: %1. Завершить её и сменить биннинг?</translation>
    </message>
    <message>
        <source>Recording in progress: %1. Stop recording and rotate the picture?</source>
        <translation>Идёт запись: %1. Завершить её и повернуть кадр?</translation>
    </message>
    <message>
        <source>Recording in progress: %1. Stop recording and load the profile?</source>
        <translation>Идёт запись: %1. Завершить её и загрузить профиль?</translation>
    </message>
</context>
<context>
    <name>PToolBar</name>
    <message>
        <source>Tool bar</source>
        <translation>Панель инструментов</translation>
    </message>
</context>
<context>
    <name>PTransactionalFile</name>
    <message>
        <source>the file was removed while it was being written</source>
        <translation>файл удалили во время записи</translation>
    </message>
    <message>
        <source>the file was truncated while it was being written</source>
        <translation>файл укоротили во время записи</translation>
    </message>
</context>
<context>
    <name>PHelpTexts</name>
    <message>
        <source>Wheel</source>
        <translation>Колесо</translation>
    </message>
    <message>
        <source>Zoom at the cursor</source>
        <translation>Увеличить или уменьшить у курсора</translation>
    </message>
    <message>
        <source>Drag</source>
        <translation>Перетаскивание</translation>
    </message>
    <message>
        <source>Move the picture or draw a region</source>
        <translation>Двигать изображение или рисовать область</translation>
    </message>
    <message>
        <source>Double click</source>
        <translation>Двойной щелчок</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Во весь экран</translation>
    </message>
    <message>
        <source>Escape</source>
        <translation>Escape</translation>
    </message>
    <message>
        <source>Leave full screen or cancel drawing a region</source>
        <translation>Выйти из полного экрана или отменить область</translation>
    </message>
    <message>
        <source>Mouse</source>
        <translation>Мышь</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Клавиши</translation>
    </message>
    <message>
        <source>none</source>
        <translation>нет</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>Программа</translation>
    </message>
    <message>
        <source>Camera library</source>
        <translation>Библиотека камеры</translation>
    </message>
    <message>
        <source>Cameras</source>
        <translation>Камеры</translation>
    </message>
    <message>
        <source>Live pictures, stills and recordings from microscope cameras.</source>
        <translation>Живое изображение, снимки и записи с камер для микроскопов.</translation>
    </message>
    <message>
        <source>Library version</source>
        <translation>Версия библиотеки</translation>
    </message>
    <message>
        <source>simulated</source>
        <translation>имитация</translation>
    </message>
</context>
<context>
    <name>PHistogramPanel</name>
    <message>
        <source>Logarithmic</source>
        <translation>Логарифмическая</translation>
    </message>
    <message>
        <source>Tenengrad measure divided by the squared mean; higher is sharper. Compare values of the same field while focusing.</source>
        <translation>Мера Tenengrad, делённая на квадрат среднего: чем больше, тем резче. Сравнивайте её на одном поле при фокусировке.</translation>
    </message>
    <message>
        <source>Mean:</source>
        <translation>Среднее:</translation>
    </message>
    <message>
        <source>Overexposed:</source>
        <translation>Пересвет:</translation>
    </message>
    <message>
        <source>Black:</source>
        <translation>Чёрное:</translation>
    </message>
    <message>
        <source>Focus score:</source>
        <translation>Резкость:</translation>
    </message>
</context>
<context>
    <name>PHistogramWidget</name>
    <message>
        <source>Histogram</source>
        <translation>Гистограмма</translation>
    </message>
</context>
<context>
    <name>PImageView</name>
    <message>
        <source>Camera picture</source>
        <translation>Изображение с камеры</translation>
    </message>
</context>
<context>
    <name>PLedgerText</name>
    <message>
        <source>Frames: %1, none lost</source>
        <translation>Кадров: %1, в пути не потеряно</translation>
    </message>
    <message>
        <source>Frames: %1, lost: %2</source>
        <translation>Кадров: %1, потеряно: %2</translation>
    </message>
    <message>
        <source>Frames: %1, lost: %2 (%3)</source>
        <translation>Кадров: %1, потеряно: %2 (%3)</translation>
    </message>
    <message>
        <source>Frames from the camera</source>
        <translation>Кадров от камеры</translation>
    </message>
    <message>
        <source>Arrived</source>
        <translation>Дошло</translation>
    </message>
    <message>
        <source>Lost: %1</source>
        <translation>Потеряно: %1</translation>
    </message>
    <message>
        <source>Dropped: %1</source>
        <translation>Отброшено: %1</translation>
    </message>
    <message>
        <source>Arrived after the last requested frame</source>
        <translation>Пришло после последнего запрошенного</translation>
    </message>
    <message>
        <source>In transit</source>
        <translation>В пути</translation>
    </message>
    <message>
        <source>Pictures taken</source>
        <translation>Снимков</translation>
    </message>
    <message>
        <source>in the camera or on the cable</source>
        <translation>в камере или в кабеле</translation>
    </message>
    <message>
        <source>unknown pixel format</source>
        <translation>неизвестный формат пикселов</translation>
    </message>
    <message>
        <source>wrong size</source>
        <translation>неверный размер</translation>
    </message>
    <message>
        <source>out of memory</source>
        <translation>не хватило памяти</translation>
    </message>
    <message>
        <source>program too slow</source>
        <translation>программа не успела</translation>
    </message>
    <message>
        <source>disk too slow or full</source>
        <translation>диск не успел или полон</translation>
    </message>
    <message>
        <source>program error</source>
        <translation>ошибка программы</translation>
    </message>
</context>
<context>
    <name>PLogPanel</name>
    <message>
        <source>The log is empty.</source>
        <translation>Журнал пуст.</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Очистить</translation>
    </message>
</context>
<context>
    <name>PModeChooser</name>
    <message>
        <source>Camera resolution</source>
        <translation>Разрешение камеры</translation>
    </message>
    <message>
        <source>not reported</source>
        <translation>не сообщено</translation>
    </message>
    <message>
        <source>Mode %1: size not reported</source>
        <translation>Режим %1: размер не сообщён</translation>
    </message>
</context>
<context>
    <name>PNamePattern</name>
    <message>
        <source>&quot;%1&quot; is not a file name: expected a name that does not begin with a dot</source>
        <translation>«%1» — не имя файла: нужно имя, которое не начинается с точки</translation>
    </message>
    <message>
        <source>the name is too long: expected up to %1 bytes</source>
        <translation>имя слишком длинное: нужно не больше %1 байт</translation>
    </message>
    <message>
        <source>a file name cannot contain &quot;%1&quot;</source>
        <translation>имя файла не может содержать «%1»</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a placeholder: expected {camera}, {date}, {time} or {n}</source>
        <translation>«%1» — не подстановка: ожидалось {camera}, {date}, {time} или {n}</translation>
    </message>
</context>
<context>
    <name>PBloscCompressor</name>
    <message>
        <source>a channel of %1 bytes is too large: expected at most %2</source>
        <translation>канал в %1 байт слишком велик: ожидается не больше %2</translation>
    </message>
    <message>
        <source>the picture cannot be compressed</source>
        <translation>снимок не удаётся сжать</translation>
    </message>
</context>
<context>
    <name>PZarrWriter</name>
    <message>
        <source>cannot save &quot;%1&quot;: %2</source>
        <translation>не удалось сохранить «%1»: %2</translation>
    </message>
    <message>
        <source>the frame has no capture information</source>
        <translation>в кадре нет сведений о съёмке</translation>
    </message>
    <message>
        <source>frame %1 differs in size or format from the first frame</source>
        <translation>у кадра %1 другой размер или вид, чем у первого</translation>
    </message>
    <message>
        <source>%1; all frames are complete, but their times are only in %2</source>
        <translation>%1; все кадры целы, но время съёмки есть только в %2</translation>
    </message>
    <message>
        <source>the folder was changed while it was being written: it has %1 of %2 frames</source>
        <translation>папку изменили во время записи: в ней %1 кадров из %2</translation>
    </message>
</context>
<context>
    <name>POmeStackWriter</name>
    <message>
        <source>cannot save &quot;%1&quot;: %2</source>
        <translation>не удалось сохранить «%1»: %2</translation>
    </message>
    <message>
        <source>the frame has no capture information</source>
        <translation>в кадре нет сведений о съёмке</translation>
    </message>
    <message>
        <source>one file holds no more than %1 frames</source>
        <translation>в одном файле не больше %1 кадров</translation>
    </message>
    <message>
        <source>frame %1 differs in size or format from the first frame</source>
        <translation>у кадра %1 другой размер или вид, чем у первого</translation>
    </message>
    <message>
        <source>%1; all pictures in the file are complete, but their times are missing</source>
        <translation>%1; все снимки в нём целы, но без времени съёмки</translation>
    </message>
</context>
<context>
    <name>PDockPanels</name>
    <message>
        <source>Cameras</source>
        <translation>Камеры</translation>
    </message>
    <message>
        <source>Histogram</source>
        <translation>Гистограмма</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Запись</translation>
    </message>
    <message>
        <source>Frames</source>
        <translation>Кадры</translation>
    </message>
    <message>
        <source>Camera settings</source>
        <translation>Настройки камеры</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Журнал</translation>
    </message>
</context>
<context>
    <name>PPictureFile</name>
    <message>
        <source>cannot save &quot;%1&quot;: %2</source>
        <translation>не удалось сохранить «%1»: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not the name of a picture file: expected a name that ends in %2</source>
        <translation>имя «%1» не указывает формат снимка: ожидалось окончание %2</translation>
    </message>
    <message>
        <source>it is a folder</source>
        <translation>это папка</translation>
    </message>
    <message>
        <source>it is not a file</source>
        <translation>это не файл</translation>
    </message>
    <message>
        <source>its name has %1 bytes: expected at most %2</source>
        <translation>имя файла занимает %1 байт: ожидалось не больше %2</translation>
    </message>
    <message>
        <source>the folder &quot;%1&quot; cannot be created</source>
        <translation>не удалось создать папку «%1»</translation>
    </message>
    <message>
        <source>the folder &quot;%1&quot; cannot be written to</source>
        <translation>в папку «%1» нельзя писать</translation>
    </message>
    <message>
        <source>the picture cannot be stored in this format</source>
        <translation>снимок не подходит к формату</translation>
    </message>
</context>
<context>
    <name>PPictureSaver</name>
    <message>
        <source>cannot save &quot;%1&quot;: %2 MB of pictures are waiting for the disk</source>
        <translation>не удаётся сохранить «%1»: диска ждут %2 МБ снимков</translation>
    </message>
</context>
<context>
    <name>PProfileReportText</name>
    <message>
        <source>All settings of the profile applied: %1.</source>
        <translation>Применены все настройки профиля: %1.</translation>
    </message>
    <message>
        <source>Settings applied: %1, refused: %2.</source>
        <translation>Применено настроек: %1, отклонено: %2.</translation>
    </message>
    <message>
        <source>Refused:</source>
        <translation>Отклонено:</translation>
    </message>
    <message>
        <source>Skipped:</source>
        <translation>Пропущено:</translation>
    </message>
    <message>
        <source>Not in the file and left unchanged: %1</source>
        <translation>Нет в файле, оставлено как есть: %1</translation>
    </message>
</context>
<context>
    <name>PPropertyCheck</name>
    <message>
        <source>a whole number</source>
        <translation>целое число</translation>
    </message>
    <message>
        <source>a choice, but the camera reports none</source>
        <translation>один из вариантов, но камера их не сообщает</translation>
    </message>
    <message>
        <source>a region, but the camera reports no area for it</source>
        <translation>область, но камера не сообщает, в каких пределах</translation>
    </message>
    <message>
        <source>a whole number from %1 to %2</source>
        <translation>целое число от %1 до %2</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>число</translation>
    </message>
    <message>
        <source>a number from %1 to %2</source>
        <translation>число от %1 до %2</translation>
    </message>
    <message>
        <source>%1 in steps of %2</source>
        <translation>%1 с шагом %2</translation>
    </message>
    <message>
        <source>one of %1</source>
        <translation>одно из %1</translation>
    </message>
    <message>
        <source>a region x,y,width,height inside %1, at least %2 x %3 pixels, in steps of %4 x %5, or the whole area</source>
        <translation>область x,y,ширина,высота внутри %1, не меньше %2 x %3 пикселов, с шагом %4 x %5, или вся</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is an action and takes no value</source>
        <translation>«%1» — действие, значений у него нет</translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be %2: expected %3</source>
        <translation>«%1» не может быть %2: ожидалось %3</translation>
    </message>
    <message>
        <source>on or off</source>
        <translation>on или off</translation>
    </message>
    <message>
        <source>one field at a time, %1.FIELD=VALUE with one of the fields %2</source>
        <translation>по одному полю, %1.ПОЛЕ=ЗНАЧЕНИЕ, поля: %2</translation>
    </message>
    <message>
        <source>a value of type %1</source>
        <translation>значение типа %1</translation>
    </message>
    <message>
        <source>a value, but the camera does not report it</source>
        <translation>значение, но камера его не сообщает</translation>
    </message>
</context>
<context>
    <name>PPropertyEditor</name>
    <message>
        <source>The device is not connected.</source>
        <translation>Устройство не подключено.</translation>
    </message>
</context>
<context>
    <name>PPropertyDisplay</name>
    <message>
        <source>µs</source>
        <translation>мкс</translation>
    </message>
    <message>
        <source>on</source>
        <translation>вкл</translation>
    </message>
    <message>
        <source>off</source>
        <translation>выкл</translation>
    </message>
    <message>
        <source>Range: %1 to %2</source>
        <translation>Диапазон: от %1 до %2</translation>
    </message>
    <message>
        <source>%1, in steps of %2</source>
        <translation>%1, с шагом %2</translation>
    </message>
    <message>
        <source>Default: %1</source>
        <translation>По умолчанию: %1</translation>
    </message>
    <message>
        <source>The camera did not report this setting.</source>
        <translation>Камера не сообщила эту настройку.</translation>
    </message>
</context>
<context>
    <name>PRecordPanel</name>
    <message>
        <source> s</source>
        <translation> с</translation>
    </message>
    <message>
        <source>Time-lapse, one frame every</source>
        <translation>Интервальная съёмка, кадр каждые</translation>
    </message>
    <message>
        <source>Number of frames</source>
        <translation>Число кадров</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Время</translation>
    </message>
    <message>
        <source>Until stopped</source>
        <translation>До остановки</translation>
    </message>
    <message>
        <source>One file (OME-TIFF)</source>
        <translation>Один файл (OME-TIFF)</translation>
    </message>
    <message>
        <source>TIFF files</source>
        <translation>Файлы TIFF</translation>
    </message>
    <message>
        <source>PNG files</source>
        <translation>Файлы PNG</translation>
    </message>
    <message>
        <source>One folder (OME-Zarr)</source>
        <translation>Одна папка (OME-Zarr)</translation>
    </message>
    <message>
        <source>Record:</source>
        <translation>Записать:</translation>
    </message>
    <message>
        <source>Frames:</source>
        <translation>Кадров:</translation>
    </message>
    <message>
        <source>Duration:</source>
        <translation>Время:</translation>
    </message>
    <message>
        <source>As:</source>
        <translation>Формат:</translation>
    </message>
    <message>
        <source>Stop recording</source>
        <translation>Остановить запись</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Запись</translation>
    </message>
    <message>
        <source>Written: %1, waiting: %2, lost: %3</source>
        <translation>Записано: %1, ждёт: %2, потеряно: %3</translation>
    </message>
    <message>
        <source>Time left: %1</source>
        <translation>Осталось: %1</translation>
    </message>
    <message>
        <source>Finishing the file…</source>
        <translation>Файл дописывается…</translation>
    </message>
    <message>
        <source>No frame has arrived for %1 s.</source>
        <translation>Кадров нет уже %1 с.</translation>
    </message>
    <message>
        <source>Not now: %1</source>
        <translation>Сейчас недоступно: %1</translation>
    </message>
</context>
<context>
    <name>PRecording</name>
    <message>
        <source>the program was closed</source>
        <translation>программа закрыта</translation>
    </message>
    <message>
        <source>the camera was closed</source>
        <translation>камера закрыта</translation>
    </message>
    <message>
        <source>the frames get another size</source>
        <translation>меняется размер кадров</translation>
    </message>
    <message>
        <source>the camera was unplugged</source>
        <translation>камера отключена</translation>
    </message>
    <message>
        <source>The recording ended early after %1 frames: %2</source>
        <translation>Запись прервана, кадров: %1. Причина: %2</translation>
    </message>
    <message>
        <source>Recorded %1 frames: %2</source>
        <translation>Записано кадров: %1, в %2</translation>
    </message>
    <message>
        <source>The recording ended early after 1 frame: %1</source>
        <translation>Запись прервана после 1 кадра. Причина: %1</translation>
    </message>
    <message>
        <source>it was stopped</source>
        <translation>её остановили</translation>
    </message>
    <message>
        <source>Recorded 1 frame: %1</source>
        <translation>Записан 1 кадр, в %1</translation>
    </message>
    <message>
        <source>the live picture was stopped</source>
        <translation>живое изображение остановили</translation>
    </message>
</context>
<context>
    <name>PRecordings</name>
    <message>
        <source>this camera is already being recorded</source>
        <translation>запись с этой камеры уже идёт</translation>
    </message>
</context>
<context>
    <name>PRegionEditor</name>
    <message>
        <source>X</source>
        <translation>X</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Y</translation>
    </message>
    <message>
        <source>Width</source>
        <translation>Ширина</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Высота</translation>
    </message>
    <message>
        <source>Whole sensor</source>
        <translation>Весь сенсор</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>PSettingsRestorer</name>
    <message>
        <source>the camera refused it</source>
        <translation>камера этого не приняла</translation>
    </message>
    <message>
        <source>the camera did not report whether it took it</source>
        <translation>камера не сообщила, приняла ли она это</translation>
    </message>
</context>
<context>
    <name>PSettingTitle</name>
    <message>
        <source>Resolution</source>
        <translation>Разрешение</translation>
    </message>
</context>
<context>
    <name>PSettingsPanel</name>
    <message>
        <source>No camera selected.</source>
        <translation>Камера не выбрана.</translation>
    </message>
    <message>
        <source>The camera is unplugged.</source>
        <translation>Камера отключена.</translation>
    </message>
    <message>
        <source>The camera is not open.</source>
        <translation>Камера не открыта.</translation>
    </message>
    <message>
        <source>Find a setting</source>
        <translation>Найти настройку</translation>
    </message>
    <message>
        <source>%1: the camera refused the value</source>
        <translation>%1: камера не приняла это значение</translation>
    </message>
    <message>
        <source>%1: the camera kept “%2”</source>
        <translation>%1: камера оставила «%2»</translation>
    </message>
</context>
<context>
    <name>PStatusFields</name>
    <message>
        <source>Pictures that wait or are being saved</source>
        <translation>Снимки, которые ещё не сохранены</translation>
    </message>
    <message>
        <source>To be saved: %1</source>
        <translation>Осталось сохранить: %1</translation>
    </message>
    <message>
        <source>not open</source>
        <translation>не открыта</translation>
    </message>
    <message>
        <source>unplugged</source>
        <translation>отключена</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>остановлена</translation>
    </message>
    <message>
        <source>next picture is due</source>
        <translation>ожидается следующий кадр</translation>
    </message>
    <message>
        <source>next picture in %1 s</source>
        <translation>следующий кадр через %1 с</translation>
    </message>
    <message>
        <source>next picture in %1 min %2 s</source>
        <translation>следующий кадр через %1 мин %2 с</translation>
    </message>
    <message>
        <source>%1 fps, %2 MB/s</source>
        <translation>%1 кадр/с, %2 МБ/с</translation>
    </message>
    <message>
        <source>Temperature of the sensor</source>
        <translation>Температура сенсора</translation>
    </message>
</context>
<context>
    <name>PTiffStack</name>
    <message>
        <source>it is too large for the format or for memory</source>
        <translation>не помещается в формат или в память</translation>
    </message>
    <message>
        <source>the file was changed while it was being written: it has %1 of %2 pictures</source>
        <translation>файл изменили во время записи: в нём %1 из %2 снимков</translation>
    </message>
</context>
<context>
    <name>PTimeText</name>
    <message>
        <source>µs</source>
        <translation>мкс</translation>
    </message>
    <message>
        <source>ms</source>
        <translation>мс</translation>
    </message>
    <message>
        <source>s</source>
        <translation>с</translation>
    </message>
</context>
<context>
    <name>PTriggerControl</name>
    <message>
        <source>an exposure time of %1 s is not possible: expected %2 s to %3 s</source>
        <translation>выдержка %1 с невозможна: ожидалось от %2 с до %3 с</translation>
    </message>
    <message>
        <source>the camera does not support triggered capture</source>
        <translation>у камеры нет съёмки по триггеру</translation>
    </message>
    <message>
        <source>the camera did not report &quot;%1&quot;</source>
        <translation>камера не сообщила «%1»</translation>
    </message>
    <message>
        <source>the camera refused triggered capture</source>
        <translation>камера отказалась снимать по триггеру</translation>
    </message>
</context>
<context>
    <name>PViewActions</name>
    <message>
        <source>Take a &amp;still</source>
        <translation>Сделать &amp;снимок</translation>
    </message>
    <message>
        <source>Still</source>
        <translation>Снимок</translation>
    </message>
    <message>
        <source>Take a still and save it in the capture folder</source>
        <translation>Сделать снимок и сохранить его в папке снимков</translation>
    </message>
    <message>
        <source>Save displayed &amp;picture as…</source>
        <translation>Сохранить &amp;показанное как…</translation>
    </message>
    <message>
        <source>Save the displayed picture under a name of your choice</source>
        <translation>Сохранить то, что показано, под выбранным именем</translation>
    </message>
    <message>
        <source>&amp;Record</source>
        <translation>&amp;Запись</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Запись</translation>
    </message>
    <message>
        <source>Record a number of frames, a duration, or a time-lapse</source>
        <translation>Записать число кадров, отрезок времени или интервальную съёмку</translation>
    </message>
    <message>
        <source>&amp;Load profile…</source>
        <translation>За&amp;грузить профиль…</translation>
    </message>
    <message>
        <source>Apply the settings in a file</source>
        <translation>Загрузить в камеру настройки из файла</translation>
    </message>
    <message>
        <source>Save pro&amp;file…</source>
        <translation>Сохранить про&amp;филь…</translation>
    </message>
    <message>
        <source>Save the camera&apos;s settings to a file</source>
        <translation>Сохранить настройки камеры в файл</translation>
    </message>
    <message>
        <source>&amp;Close camera</source>
        <translation>&amp;Закрыть камеру</translation>
    </message>
    <message>
        <source>Close the current camera</source>
        <translation>Закрыть текущую камеру</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>В&amp;ыход</translation>
    </message>
    <message>
        <source>Close all cameras and quit</source>
        <translation>Закрыть всё и выйти</translation>
    </message>
    <message>
        <source>&amp;Live picture</source>
        <translation>&amp;Живое изображение</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Просмотр</translation>
    </message>
    <message>
        <source>Start or stop the live picture</source>
        <translation>Включить или остановить живое изображение</translation>
    </message>
    <message>
        <source>&amp;Draw region</source>
        <translation>Нарисовать &amp;область</translation>
    </message>
    <message>
        <source>Region</source>
        <translation>Область</translation>
    </message>
    <message>
        <source>Use the mouse to draw the region that the camera sends</source>
        <translation>Нарисовать мышью область, которую должна передавать камера</translation>
    </message>
    <message>
        <source>&amp;Whole sensor</source>
        <translation>&amp;Весь сенсор</translation>
    </message>
    <message>
        <source>Whole sensor</source>
        <translation>Весь сенсор</translation>
    </message>
    <message>
        <source>Use the whole sensor again</source>
        <translation>Вернуться ко всему сенсору</translation>
    </message>
    <message>
        <source>Pixel &amp;size…</source>
        <translation>&amp;Размер пиксела…</translation>
    </message>
    <message>
        <source>Set the size of a pixel on the specimen, for the scale bar</source>
        <translation>Указать размер пиксела на препарате для масштабной линейки</translation>
    </message>
    <message>
        <source>Search for &amp;cameras</source>
        <translation>&amp;Искать камеры</translation>
    </message>
    <message>
        <source>Search for cameras again</source>
        <translation>Снова искать подключённые камеры</translation>
    </message>
    <message>
        <source>&amp;Fit to window</source>
        <translation>По размеру &amp;окна</translation>
    </message>
    <message>
        <source>Fit</source>
        <translation>Вписать</translation>
    </message>
    <message>
        <source>Show the whole picture</source>
        <translation>Показать изображение целиком</translation>
    </message>
    <message>
        <source>&amp;Actual pixels</source>
        <translation>&amp;Пиксел в пиксел</translation>
    </message>
    <message>
        <source>1:1</source>
        <translation>1:1</translation>
    </message>
    <message>
        <source>Show at 100 %</source>
        <translation>Показать в масштабе 100 %</translation>
    </message>
    <message>
        <source>Zoom &amp;in</source>
        <translation>&amp;Увеличить</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Увеличить изображение</translation>
    </message>
    <message>
        <source>Zoom &amp;out</source>
        <translation>У&amp;меньшить</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Уменьшить изображение</translation>
    </message>
    <message>
        <source>F&amp;ull screen</source>
        <translation>Во весь &amp;экран</translation>
    </message>
    <message>
        <source>Full screen</source>
        <translation>Во весь экран</translation>
    </message>
    <message>
        <source>Show only the picture; press Esc to return</source>
        <translation>Показать только изображение; Esc возвращает</translation>
    </message>
    <message>
        <source>Mark &amp;clipped pixels</source>
        <translation>Отмечать пере&amp;свет</translation>
    </message>
    <message>
        <source>Clipping</source>
        <translation>Пересвет</translation>
    </message>
    <message>
        <source>Mark overexposed pixels in red and black pixels in blue</source>
        <translation>Отмечать пересвеченные пикселы красным, чёрные — синим</translation>
    </message>
    <message>
        <source>Stretch contras&amp;t</source>
        <translation>Растянуть &amp;контраст</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Контраст</translation>
    </message>
    <message>
        <source>Stretch the contrast on the screen; saved pictures are not changed</source>
        <translation>Растянуть контраст на экране; сохраняются снимки без изменений</translation>
    </message>
    <message>
        <source>&amp;Keyboard and mouse</source>
        <translation>&amp;Клавиатура и мышь</translation>
    </message>
    <message>
        <source>Show keyboard shortcuts and mouse actions</source>
        <translation>Показать все клавиши и действия мыши</translation>
    </message>
    <message>
        <source>&amp;About pcdview</source>
        <translation>&amp;О программе pcdview</translation>
    </message>
    <message>
        <source>Show version numbers and the camera library in use</source>
        <translation>Показать версии и используемую библиотеку камеры</translation>
    </message>
    <message>
        <source>F&amp;older and names…</source>
        <translation>Папка и &amp;имена…</translation>
    </message>
    <message>
        <source>Choose folder and names of pictures and recordings</source>
        <translation>Выбрать папку снимков и записей и их имена</translation>
    </message>
    <message>
        <source>Not now: %1</source>
        <translation>Сейчас недоступно: %1</translation>
    </message>
</context>
<context>
    <name>PViewCamera</name>
    <message>
        <source>the camera was unplugged again</source>
        <translation>камеру снова отключили</translation>
    </message>
    <message>
        <source>The settings could not be restored: %1</source>
        <translation>Настройки не удалось восстановить: %1</translation>
    </message>
    <message>
        <source>Not restored: %1 (%2)</source>
        <translation>Не восстановлено: %1 (%2)</translation>
    </message>
    <message>
        <source>the camera is unplugged</source>
        <translation>камера отключена</translation>
    </message>
    <message>
        <source>the live picture is stopped; start it first</source>
        <translation>живое изображение остановлено; сначала включите его</translation>
    </message>
    <message>
        <source>the camera refused to take a still</source>
        <translation>камера отказалась делать снимок</translation>
    </message>
    <message>
        <source>the camera is not open</source>
        <translation>камера не открыта</translation>
    </message>
</context>
<context>
    <name>PViewProgram</name>
    <message>
        <source>The program could not be restarted.</source>
        <translation>Не удаётся запустить программу снова.</translation>
    </message>
</context>
<context>
    <name>PWelcomePage</name>
    <message>
        <source>Search again</source>
        <translation>Искать снова</translation>
    </message>
    <message>
        <source>Try it with simulated cameras</source>
        <translation>Попробовать с имитацией камер</translation>
    </message>
    <message>
        <source>No camera is open</source>
        <translation>Ни одна камера не открыта</translation>
    </message>
    <message>
        <source>Double-click a camera in the list to open it.</source>
        <translation>Дважды щёлкните камеру в списке, чтобы открыть её.</translation>
    </message>
    <message>
        <source>No camera found</source>
        <translation>Камера не найдена</translation>
    </message>
    <message>
        <source>Connect the camera, preferably directly to a USB 3 port of the computer. It will appear here automatically.</source>
        <translation>Подключите камеру, лучше прямо к порту USB 3 компьютера. Она появится здесь сама.</translation>
    </message>
    <message>
        <source>If it is connected, another program may be using it, or you may not have permission to use it. The camera maker&apos;s installer grants this permission (with a udev rule); reconnect the camera afterwards.</source>
        <translation>Если она подключена: возможно, её держит другая программа или у вашего пользователя нет права на неё. Это право даёт установка производителя (правило udev); после неё подключите камеру заново.</translation>
    </message>
    <message>
        <source>Camera library in use: %1</source>
        <translation>Используется библиотека камеры: %1</translation>
    </message>
    <message>
        <source>Simulated cameras are in use, and none in the scene is plugged in.</source>
        <translation>Используется имитация камер, и в сцене нет ни одной подключённой.</translation>
    </message>
    <message>
        <source>Start the program with another scene: pcdview --scene FILE. Without this option there are two cameras.</source>
        <translation>Запустите программу с другой сценой: pcdview --scene FILE. Без этого параметра камер две.</translation>
    </message>
</context>
<context>
    <name>PWindowTitle</name>
    <message>
        <source>Simulated camera</source>
        <translation>Имитация камеры</translation>
    </message>
    <message>
        <source>unplugged</source>
        <translation>отключена</translation>
    </message>
</context>
<context>
    <name>PQuietReading</name>
    <message>
        <source>the camera did not report %1</source>
        <translation>камера не сообщила %1</translation>
    </message>
</context>
</TS>
