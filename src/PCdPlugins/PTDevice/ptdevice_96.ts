<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="en_US">
<context>
    <name>PTBacklight</name>
    <message>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
    <message>
        <source>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-style:italic;&quot;&gt;Select compensate backlight fluctuation mode, if you have halogen light source select value 50/60Hz, in case of LED select DC. Some exposure values may be unavailable when you select 50/60 Hz mode.&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head/&gt;&lt;body&gt;&lt;p&gt;&lt;span style=&quot; font-style:italic;&quot;&gt;Компенсация мерцания света: для галогенной лампы выберите 50 или 60 Гц, для светодиода — постоянный ток. В режиме 50/60 Гц часть значений выдержки может быть недоступна.&lt;/span&gt;&lt;/p&gt;&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>DC</source>
        <translation>Постоянный ток</translation>
    </message>
    <message>
        <source>50 Hz</source>
        <translation>50 Гц</translation>
    </message>
    <message>
        <source>60 Hz</source>
        <translation>60 Гц</translation>
    </message>
</context>
<context>
    <name>PTDevice</name>
    <message>
        <source>Exposure settings</source>
        <translation>Параметры экспозиции</translation>
    </message>
    <message>
        <source>White balance</source>
        <translation>Баланс белого</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Скорость считывания</translation>
    </message>
    <message>
        <source>If the live video is not displayed, reduce the speed.</source>
        <translation>Если видео не отображается, уменьшите скорость считывания.</translation>
    </message>
    <message>
        <source>Autoexposure</source>
        <translation>Автоэкспозиция</translation>
    </message>
    <message>
        <source>Autotarget</source>
        <translation>Целевая яркость</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Выдержка</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>Усиление</translation>
    </message>
    <message>
        <source>Tint</source>
        <translation>Оттенок</translation>
    </message>
    <message>
        <source>Temp</source>
        <translation>Цветовая температура</translation>
    </message>
    <message>
        <source>Auto whitebalance</source>
        <translation>Автобаланс белого</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Контраст</translation>
    </message>
    <message>
        <source>Hue</source>
        <translation>Цветовой тон</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Насыщенность</translation>
    </message>
    <message>
        <source>Brightness</source>
        <translation>Яркость</translation>
    </message>
    <message>
        <source>Gamma</source>
        <translation>Гамма</translation>
    </message>
    <message>
        <source>Negative</source>
        <translation>Негатив</translation>
    </message>
    <message>
        <source>Chrome</source>
        <translation>Монохромный режим</translation>
    </message>
    <message>
        <source>Vertical flip</source>
        <translation>Отражение по вертикали</translation>
    </message>
    <message>
        <source>Horizontal flip</source>
        <translation>Отражение по горизонтали</translation>
    </message>
    <message>
        <source>ROI</source>
        <translation>Область интереса</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Цвет</translation>
    </message>
    <message>
        <source>Binning</source>
        <translation>Биннинг</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>Кадр</translation>
    </message>
    <message>
        <source>Backlight compensation</source>
        <translation>Компенсация мерцания света</translation>
    </message>
    <message>
        <source>Cooling</source>
        <translation>Охлаждение</translation>
    </message>
</context>
<context>
    <name>PTECProperty</name>
    <message>
        <source>%1/%2 (current/max)</source>
        <translation>%1/%2 (текущее/макс.)</translation>
    </message>
</context>
<context>
    <name>PTExtendedExposure</name>
    <message>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
    <message>
        <source>VIDEO</source>
        <translation>ВИДЕО</translation>
    </message>
    <message>
        <source>TRIGGER</source>
        <translation>ТРИГГЕР</translation>
    </message>
    <message>
        <source>Auto exposure</source>
        <translation>Автоэкспозиция</translation>
    </message>
    <message>
        <source>Exposure target</source>
        <translation>Целевая яркость</translation>
    </message>
    <message>
        <source>Exposure time (ms)</source>
        <translation>Выдержка (мс)</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>Усиление</translation>
    </message>
    <message>
        <source>Trigger mode:</source>
        <translation>Режим триггера:</translation>
    </message>
    <message>
        <source>Software</source>
        <translation>Программный</translation>
    </message>
    <message>
        <source>External</source>
        <translation>Внешний</translation>
    </message>
    <message>
        <source>Minutes:</source>
        <translation>Минуты:</translation>
    </message>
    <message>
        <source>Seconds:</source>
        <translation>Секунды:</translation>
    </message>
    <message>
        <source>Milliseconds:</source>
        <translation>Миллисекунды:</translation>
    </message>
    <message>
        <source>Microseconds:</source>
        <translation>Микросекунды:</translation>
    </message>
    <message>
        <source>Run once</source>
        <translation>Один кадр</translation>
    </message>
    <message>
        <source>Run repeat mode</source>
        <translation>Непрерывная съёмка</translation>
    </message>
    <message>
        <source>Run sequence:</source>
        <translation>Серия:</translation>
    </message>
    <message>
        <source>Count:</source>
        <translation>Кадров:</translation>
    </message>
</context>
<context>
    <name>PTExtendedExposureWidget</name>
    <message>
        <source>This camera cannot be triggered by software.</source>
        <translation>Программный триггер этой камерой не поддерживается.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Стоп</translation>
    </message>
    <message>
        <source>Run once</source>
        <translation>Один кадр</translation>
    </message>
    <message>
        <source>Run sequence</source>
        <translation>Серия</translation>
    </message>
    <message>
        <source>Run repeat</source>
        <translation>Непрерывно</translation>
    </message>
</context>
<context>
    <name>PTFanControl</name>
    <message>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
    <message>
        <source>Fan enable</source>
        <translation>Вентилятор включён</translation>
    </message>
    <message>
        <source>Fan speed:</source>
        <translation>Скорость вентилятора:</translation>
    </message>
</context>
<context>
    <name>PTTecControl</name>
    <message>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
    <message>
        <source>Enable TEC</source>
        <translation>Охлаждение сенсора (TEC)</translation>
    </message>
    <message>
        <source>Current temperature:</source>
        <translation>Текущая температура:</translation>
    </message>
    <message>
        <source>%1</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>Voltage:</source>
        <translation>Напряжение:</translation>
    </message>
    <message>
        <source>Target TEC temperature:</source>
        <translation>Заданная температура:</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Disable</source>
        <translation>Выключено</translation>
    </message>
    <message>
        <source>Enable</source>
        <translation>Включено</translation>
    </message>
    <message>
        <source>No binning</source>
        <translation>Без биннинга</translation>
    </message>
    <message>
        <source>Add 2x2</source>
        <translation>Сумма 2×2</translation>
    </message>
    <message>
        <source>Add 3x3</source>
        <translation>Сумма 3×3</translation>
    </message>
    <message>
        <source>Add 4x4</source>
        <translation>Сумма 4×4</translation>
    </message>
    <message>
        <source>Average 2x2</source>
        <translation>Среднее 2×2</translation>
    </message>
    <message>
        <source>Average 3x3</source>
        <translation>Среднее 3×3</translation>
    </message>
    <message>
        <source>Average 4x4</source>
        <translation>Среднее 4×4</translation>
    </message>
    <message>
        <source>0°</source>
        <translation>0°</translation>
    </message>
    <message>
        <source>90°</source>
        <translation>90°</translation>
    </message>
    <message>
        <source>180°</source>
        <translation>180°</translation>
    </message>
    <message>
        <source>270°</source>
        <translation>270°</translation>
    </message>
    <message>
        <source>Color matrix</source>
        <translation>Матрица цветокоррекции</translation>
    </message>
    <message>
        <source>WB Gain</source>
        <translation>Коэффициенты баланса белого</translation>
    </message>
    <message>
        <source>Binning</source>
        <translation>Биннинг</translation>
    </message>
    <message>
        <source>Rotate</source>
        <translation>Поворот</translation>
    </message>
</context>
</TS>
