<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru">
<context>
    <name>AboutWindow</name>
    <message>
        <source>About Murmel</source>
        <translation>О программе Murmel</translation>
    </message>
    <message>
        <source>Private dictation. Your voice and your words stay on this computer.</source>
        <translation>Приватная диктовка. Ваш голос и ваши слова остаются на этом компьютере.</translation>
    </message>
    <message>
        <source>Version %1 (build %2)</source>
        <translation>Версия %1 (сборка %2)</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Копировать</translation>
    </message>
    <message>
        <source>Diagnostics</source>
        <translation>Диагностика</translation>
    </message>
    <message>
        <source>Version, desktop and checks for a report. No words of yours.</source>
        <translation>Версия, рабочий стол и проверки для отчёта. Без ваших слов.</translation>
    </message>
    <message>
        <source>Copied. Paste it into your report.</source>
        <translation>Скопировано. Вставьте в отчёт.</translation>
    </message>
    <message>
        <source>Credits</source>
        <translation>Благодарности</translation>
    </message>
    <message>
        <source>The people whose work Murmel stands on, and their licenses.</source>
        <translation>Люди, на чьей работе основан Murmel, и их лицензии.</translation>
    </message>
    <message>
        <source>Show…</source>
        <translation>Показать…</translation>
    </message>
    <message>
        <source>Tip jar</source>
        <translation>Чаевые</translation>
    </message>
    <message>
        <source>Opens %1 in your browser. A tip is a thank-you: it unlocks nothing, and everything works without it.</source>
        <translation>Открывает %1 в браузере. Чаевые — это благодарность: они ничего не разблокируют, и всё работает без них.</translation>
    </message>
    <message>
        <source>Leave a Tip…</source>
        <translation>Оставить чаевые…</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
</context>
<context>
    <name>AdvancedPage</name>
    <message>
        <source>Advanced</source>
        <translation>Дополнительно</translation>
    </message>
    <message>
        <source>Recognition</source>
        <translation>Распознавание</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Обновления</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Автоматически проверять обновления</translation>
    </message>
    <message>
        <source>Settings file</source>
        <translation>Файл настроек</translation>
    </message>
    <message>
        <source>Export settings</source>
        <translation>Экспорт настроек</translation>
    </message>
    <message>
        <source>As JSON, without vocabulary, history and keys.</source>
        <translation>В формате JSON, без словаря, истории и ключей.</translation>
    </message>
    <message>
        <source>Export…</source>
        <translation>Экспорт…</translation>
    </message>
    <message>
        <source>Import settings</source>
        <translation>Импорт настроек</translation>
    </message>
    <message>
        <source>Settings that the file does not name stay as they are.</source>
        <translation>Настройки, которых нет в файле, не меняются.</translation>
    </message>
    <message>
        <source>Import…</source>
        <translation>Импорт…</translation>
    </message>
    <message>
        <source>Export Settings</source>
        <translation>Экспорт настроек</translation>
    </message>
    <message>
        <source>The settings are in %1.</source>
        <translation>Настройки сохранены в %1.</translation>
    </message>
    <message>
        <source>The settings of the file are in effect.</source>
        <translation>Настройки из файла применены.</translation>
    </message>
    <message>
        <source>Import Settings</source>
        <translation>Импорт настроек</translation>
    </message>
    <message>
        <source>Settings (*.json);;All files (*)</source>
        <translation>Настройки (*.json);;Все файлы (*)</translation>
    </message>
    <message>
        <source>Keep the speech model in memory</source>
        <translation>Держать речевую модель в памяти</translation>
    </message>
    <message>
        <source>After the last dictation. It is loaded again while you speak the next one.</source>
        <translation>После последней диктовки. При следующей она загрузится снова, пока вы говорите.</translation>
    </message>
    <message>
        <source>1 minute</source>
        <translation>1 минута</translation>
    </message>
    <message>
        <source>10 minutes</source>
        <translation>10 минут</translation>
    </message>
    <message>
        <source>1 hour</source>
        <translation>1 час</translation>
    </message>
    <message>
        <source>Always</source>
        <translation>Всегда</translation>
    </message>
    <message>
        <source>At most once a day. Nothing is downloaded or installed without your word.</source>
        <translation>Не чаще раза в день. Без вашего слова ничего не загружается и не устанавливается.</translation>
    </message>
    <message>
        <source>Work ahead while I speak</source>
        <translation>Работать наперёд во время речи</translation>
    </message>
    <message>
        <source>Recognizes what you have said during a long dictation, so that the words come sooner after it. Nothing is inserted by this. From the next dictation.</source>
        <translation>Распознаёт сказанное уже во время длинной диктовки, чтобы слова появились скорее после неё. Сама по себе ничего не вставляет. Со следующей диктовки.</translation>
    </message>
</context>
<context>
    <name>AudioPage</name>
    <message>
        <source>Audio</source>
        <translation>Звук</translation>
    </message>
    <message>
        <source>Murmel records from the microphone that the desktop uses, into memory only.</source>
        <translation>Murmel записывает с микрофона, выбранного в системе, и только в память.</translation>
    </message>
    <message>
        <source>Test Microphone</source>
        <translation>Проверить микрофон</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Микрофон</translation>
    </message>
    <message>
        <source>Sound Settings…</source>
        <translation>Настройки звука…</translation>
    </message>
    <message>
        <source>Microphone in use</source>
        <translation>Используемый микрофон</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Уровень</translation>
    </message>
    <message>
        <source>Start the test and say a sentence. Nothing of it is kept.</source>
        <translation>Начните проверку и скажите фразу. Ничего не сохраняется.</translation>
    </message>
    <message>
        <source>input volume gain meter</source>
        <translation>громкость усиление индикатор</translation>
    </message>
    <message>
        <source>The microphone cannot be tried in this session.</source>
        <translation>В этом сеансе микрофон проверить нельзя.</translation>
    </message>
    <message>
        <source>Sounds</source>
        <translation>Звуки</translation>
    </message>
    <message>
        <source>Play sounds</source>
        <translation>Воспроизводить звуки</translation>
    </message>
    <message>
        <source>A short sound when recording starts, and another when it stops.</source>
        <translation>Короткий звук в начале записи и ещё один в конце.</translation>
    </message>
    <message>
        <source>There is no microphone.</source>
        <translation>Микрофона нет.</translation>
    </message>
    <message>
        <source>Stop Test</source>
        <translation>Остановить проверку</translation>
    </message>
    <message>
        <source>Nothing is heard yet. Is the microphone muted?</source>
        <translation>Пока ничего не слышно. Микрофон не выключен?</translation>
    </message>
    <message>
        <source>Very quiet. Come closer, or raise the input volume.</source>
        <translation>Очень тихо. Подойдите ближе или увеличьте громкость микрофона.</translation>
    </message>
    <message>
        <source>The level is good.</source>
        <translation>Уровень хороший.</translation>
    </message>
    <message>
        <source>Too loud. Lower the input volume a little.</source>
        <translation>Слишком громко. Немного уменьшите громкость микрофона.</translation>
    </message>
    <message>
        <source>Microphone level</source>
        <translation>Уровень микрофона</translation>
    </message>
    <message>
        <source>Choosing another one changes it for the whole desktop.</source>
        <translation>Выбор другого изменит его для всей среды.</translation>
    </message>
    <message>
        <source>This session has no list of microphones.</source>
        <translation>В этом сеансе нет списка микрофонов.</translation>
    </message>
    <message>
        <source>Volume and devices</source>
        <translation>Громкость и устройства</translation>
    </message>
    <message>
        <source>In the sound settings of the desktop.</source>
        <translation>В настройках звука среды.</translation>
    </message>
</context>
<context>
    <name>Common</name>
    <message>
        <source>Dismiss</source>
        <translation>Скрыть</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Очистить</translation>
    </message>
</context>
<context>
    <name>CreditsWindow</name>
    <message>
        <source>Credits</source>
        <translation>Благодарности</translation>
    </message>
    <message>
        <source>What Murmel is made of</source>
        <translation>Из чего состоит Murmel</translation>
    </message>
    <message>
        <source>License</source>
        <translation>Лицензия</translation>
    </message>
    <message>
        <source>Libraries</source>
        <translation>Библиотеки</translation>
    </message>
    <message>
        <source>Engines</source>
        <translation>Движки</translation>
    </message>
    <message>
        <source>Models</source>
        <translation>Модели</translation>
    </message>
    <message>
        <source>The list of credits is missing from this installation.</source>
        <translation>В этой установке нет списка благодарностей.</translation>
    </message>
    <message>
        <source>The full text of the license is not on this computer; it is at %1.</source>
        <translation>Полного текста лицензии нет на этом компьютере; он находится по адресу %1.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Taken from %1.</source>
        <translation>Взято из %1.</translation>
    </message>
</context>
<context>
    <name>Dialogs</name>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>The file cannot be read.</source>
        <translation>Не удаётся прочитать файл.</translation>
    </message>
    <message>
        <source>The file is too large.</source>
        <translation>Файл слишком большой.</translation>
    </message>
    <message>
        <source>The file is not a text in UTF-8.</source>
        <translation>Файл не является текстом в UTF-8.</translation>
    </message>
    <message>
        <source>The file cannot be written: %1</source>
        <translation>Не удаётся записать файл: %1</translation>
    </message>
</context>
<context>
    <name>FirstRunWindow</name>
    <message>
        <source>Murmel Setup</source>
        <translation>Настройка Murmel</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Назад</translation>
    </message>
    <message>
        <source>Step %1 of %2</source>
        <translation>Шаг %1 из %2</translation>
    </message>
    <message>
        <source>Finish</source>
        <translation>Готово</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Далее</translation>
    </message>
    <message>
        <source>Finish Later</source>
        <translation>Завершить позже</translation>
    </message>
    <message>
        <source>Use %1</source>
        <translation>Взять %1</translation>
    </message>
</context>
<context>
    <name>GeneralPage</name>
    <message>
        <source>General</source>
        <translation>Общие</translation>
    </message>
    <message>
        <source>Changes take effect at once. What is fixed while you speak takes effect with the next dictation, and says so.</source>
        <translation>Изменения действуют сразу. То, что нельзя менять во время речи, действует со следующей диктовки — об этом сказано рядом.</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Запуск</translation>
    </message>
    <message>
        <source>Start when I log in</source>
        <translation>Запускать при входе в систему</translation>
    </message>
    <message>
        <source>Murmel waits in the tray and uses no processor time until you dictate.</source>
        <translation>Murmel ждёт в трее и не тратит процессорное время, пока вы не диктуете.</translation>
    </message>
    <message>
        <source>autostart login session boot</source>
        <translation>автозапуск вход сеанс загрузка</translation>
    </message>
    <message>
        <source>This session has no folder for programs that start with it.</source>
        <translation>В этом сеансе нет папки для автозапуска программ.</translation>
    </message>
    <message>
        <source>This desktop lists every window: no program can keep out of its bar.</source>
        <translation>Это рабочее окружение показывает все окна: ни одна программа не может остаться вне его панели.</translation>
    </message>
    <message>
        <source>Show in the task bar</source>
        <translation>Показывать на панели задач</translation>
    </message>
    <message>
        <source>Without this, open windows appear in the tray icon&apos;s menu only.</source>
        <translation>Иначе открытые окна доступны только через меню значка в трее.</translation>
    </message>
    <message>
        <source>While you dictate</source>
        <translation>Во время диктовки</translation>
    </message>
    <message>
        <source>live insertion phrases</source>
        <translation>живая вставка фразы</translation>
    </message>
    <message>
        <source>Restore the clipboard</source>
        <translation>Восстанавливать буфер обмена</translation>
    </message>
    <message>
        <source>Murmel pastes through the clipboard. This puts back what you had copied before. Words that could not be pasted stay there for you, marked private; not every clipboard history heeds the mark.</source>
        <translation>Murmel вставляет текст через буфер обмена. После этого в нём снова то, что вы скопировали раньше. Слова, которые не удалось вставить, остаются там для вас с пометкой «личное»; не каждая история буфера обмена её учитывает.</translation>
    </message>
    <message>
        <source>Recording indicator</source>
        <translation>Индикатор записи</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Положение</translation>
    </message>
    <message>
        <source>The edge of the screen where the indicator floats while Murmel listens.</source>
        <translation>Край экрана, у которого находится индикатор, пока Murmel слушает.</translation>
    </message>
    <message>
        <source>overlay pill edge</source>
        <translation>индикатор край наложение</translation>
    </message>
    <message>
        <source>Keep the indicator on the screen</source>
        <translation>Оставлять индикатор на экране</translation>
    </message>
    <message>
        <source>A small button that starts a dictation. Without a shortcut it is always there.</source>
        <translation>Небольшая кнопка, которая начинает диктовку. Без сочетания клавиш она есть всегда.</translation>
    </message>
    <message>
        <source>Insert phrases while I speak</source>
        <translation>Вставлять фразы во время речи</translation>
    </message>
    <message>
        <source>Looks for a phrase pause after at least 3 seconds, then inserts recognized and formatted phrases—not individual words. A phrase pause is a short silence. From the next dictation.</source>
        <translation>Ищет паузу между фразами не ранее чем через 3 секунды и вставляет распознанные и оформленные фразы, а не отдельные слова. Пауза — это короткая тишина. Со следующей диктовки.</translation>
    </message>
</context>
<context>
    <name>HistoryModel</name>
    <message numerus="yes">
        <source>%n word(s)</source>
        <translation>
            <numerusform>%n слово</numerusform>
            <numerusform>%n слова</numerusform>
            <numerusform>%n слов</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n part(s) not recognized</source>
        <translation>
            <numerusform>%n часть не распознана</numerusform>
            <numerusform>%n части не распознаны</numerusform>
            <numerusform>%n частей не распознано</numerusform>
        </translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Сегодня</translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation>Вчера</translation>
    </message>
</context>
<context>
    <name>HistoryWindow</name>
    <message>
        <source>Murmel History</source>
        <translation>История Murmel</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Копировать</translation>
    </message>
    <message>
        <source>Paste Again</source>
        <translation>Вставить снова</translation>
    </message>
    <message>
        <source>Delete…</source>
        <translation>Удалить…</translation>
    </message>
    <message>
        <source>Delete All…</source>
        <translation>Удалить всё…</translation>
    </message>
    <message>
        <source>Turn On</source>
        <translation>Включить</translation>
    </message>
    <message>
        <source>Unlock</source>
        <translation>Разблокировать</translation>
    </message>
    <message>
        <source>Dictations</source>
        <translation>Диктовки</translation>
    </message>
    <message>
        <source>Search dictations</source>
        <translation>Поиск в диктовках</translation>
    </message>
    <message>
        <source>Auto-delete history</source>
        <translation>Автоудаление истории</translation>
    </message>
    <message>
        <source>The whole dictation</source>
        <translation>Вся диктовка</translation>
    </message>
    <message>
        <source>History is optional and off by default.</source>
        <translation>История необязательна и по умолчанию выключена.</translation>
    </message>
    <message>
        <source>No dictation is stored.</source>
        <translation>Сохранённых диктовок нет.</translation>
    </message>
    <message>
        <source>No dictation has these words.</source>
        <translation>Нет диктовок с такими словами.</translation>
    </message>
    <message numerus="yes">
        <source>%n dictation(s)</source>
        <translation>
            <numerusform>%n диктовка</numerusform>
            <numerusform>%n диктовки</numerusform>
            <numerusform>%n диктовок</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n word(s)</source>
        <translation>
            <numerusform>%n слово</numerusform>
            <numerusform>%n слова</numerusform>
            <numerusform>%n слов</numerusform>
        </translation>
    </message>
    <message>
        <source>Delete this dictation?</source>
        <translation>Удалить эту диктовку?</translation>
    </message>
    <message>
        <source>It cannot be recovered.</source>
        <translation>Её нельзя будет восстановить.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Delete the whole history?</source>
        <translation>Удалить всю историю?</translation>
    </message>
    <message>
        <source>Every entry, and the key that could read copies of it, is deleted. They cannot be recovered.</source>
        <translation>Все записи и ключ, которым можно прочитать их копии, удаляются. Их нельзя будет восстановить.</translation>
    </message>
    <message>
        <source>Delete All</source>
        <translation>Удалить всё</translation>
    </message>
    <message>
        <source>What is stored cannot be read now.</source>
        <translation>Сохранённое сейчас нельзя прочитать.</translation>
    </message>
</context>
<context>
    <name>Keys</name>
    <message>
        <source>Ctrl</source>
        <translation>Ctrl</translation>
    </message>
    <message>
        <source>Alt</source>
        <translation>Alt</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>Super</source>
        <translation>Super</translation>
    </message>
    <message>
        <source>Fn</source>
        <translation>Fn</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Enter</translation>
    </message>
    <message>
        <source>Tab</source>
        <translation>Tab</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Пробел</translation>
    </message>
    <message>
        <source>Backspace</source>
        <translation>Backspace</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Home</translation>
    </message>
    <message>
        <source>End</source>
        <translation>End</translation>
    </message>
    <message>
        <source>Page Up</source>
        <translation>Page Up</translation>
    </message>
    <message>
        <source>Page Down</source>
        <translation>Page Down</translation>
    </message>
    <message>
        <source>This desktop does not tell when keys are let go of: press once to start, and again to stop.</source>
        <translation>Этот рабочий стол не сообщает, когда клавиши отпускают: нажмите один раз, чтобы начать, и ещё раз, чтобы закончить.</translation>
    </message>
</context>
<context>
    <name>LanguagesPage</name>
    <message>
        <source>Languages</source>
        <translation>Языки</translation>
    </message>
    <message>
        <source>What you speak. Changes take effect with the next dictation.</source>
        <translation>На чём вы говорите. Изменения действуют со следующей диктовки.</translation>
    </message>
    <message>
        <source>Recognize</source>
        <translation>Распознавать</translation>
    </message>
    <message>
        <source>All languages, automatically</source>
        <translation>Все языки автоматически</translation>
    </message>
    <message>
        <source>The languages I select</source>
        <translation>Языки, которые я выберу</translation>
    </message>
    <message>
        <source>One language only</source>
        <translation>Только один язык</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Язык</translation>
    </message>
    <message>
        <source>Speech is taken for this language, whatever it sounds like.</source>
        <translation>Речь считается речью на этом языке, как бы она ни звучала.</translation>
    </message>
    <message>
        <source>The language is recognized from what you say.</source>
        <translation>Язык определяется по тому, что вы говорите.</translation>
    </message>
    <message>
        <source>The language is recognized from what you say; your list decides which correction is recommended.</source>
        <translation>Язык определяется по вашей речи; список влияет на то, какая коррекция рекомендуется.</translation>
    </message>
    <message>
        <source>Short phrases are recognized more reliably when only one language comes into question.</source>
        <translation>Короткие фразы распознаются надёжнее, когда язык только один.</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Выше</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Ниже</translation>
    </message>
    <message>
        <source>My languages</source>
        <translation>Мои языки</translation>
    </message>
    <message>
        <source>Mark what you speak, and put the most frequent language first.</source>
        <translation>Отметьте языки, на которых говорите, и поставьте самый частый первым.</translation>
    </message>
</context>
<context>
    <name>Messages</name>
    <message>
        <source>Ready</source>
        <translation>Готово</translation>
    </message>
    <message>
        <source>Listening… release shortcut</source>
        <translation>Слушаю… отпустите клавиши</translation>
    </message>
    <message>
        <source>Listening · recognition is catching up…</source>
        <translation>Слушаю · распознавание догоняет…</translation>
    </message>
    <message>
        <source>Transcribing locally…</source>
        <translation>Локальное распознавание…</translation>
    </message>
    <message>
        <source>Inserted</source>
        <translation>Вставлено</translation>
    </message>
    <message>
        <source>Inserted · clipboard restored</source>
        <translation>Вставлено · буфер обмена восстановлен</translation>
    </message>
    <message>
        <source>Inserted · transcript kept</source>
        <translation>Вставлено · текст остался в буфере</translation>
    </message>
    <message>
        <source>Insertion sent · clipboard changed</source>
        <translation>Отправлено · буфер обмена изменился</translation>
    </message>
    <message>
        <source>Copied — press %paste</source>
        <translation>Скопировано — нажмите %paste</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Отменено</translation>
    </message>
    <message>
        <source>Finish the app update before recording.</source>
        <translation>Перед записью завершите обновление программы.</translation>
    </message>
    <message>
        <source>Download the required Parakeet speech model to use dictation</source>
        <translation>Чтобы диктовать, скачайте необходимую речевую модель Parakeet</translation>
    </message>
    <message>
        <source>Required Parakeet speech model is not installed</source>
        <translation>Необходимая речевая модель Parakeet не установлена</translation>
    </message>
    <message>
        <source>Verifying existing local models…</source>
        <translation>Проверка имеющихся моделей…</translation>
    </message>
    <message>
        <source>Part of the recording was not recognized.</source>
        <translation>Часть записи не распознана.</translation>
    </message>
    <message>
        <source>Audio configuration changed. Recording stopped; captured audio processed.</source>
        <translation>Конфигурация звука изменилась. Запись остановлена; записанное обработано.</translation>
    </message>
    <message>
        <source>Audio configuration changed. Recording stopped; no speech was recognized.</source>
        <translation>Конфигурация звука изменилась. Запись остановлена; речь не распознана.</translation>
    </message>
    <message>
        <source>Memory is running out. Recording stopped; captured audio processed.</source>
        <translation>Память заканчивается. Запись остановлена; записанное обработано.</translation>
    </message>
    <message>
        <source>Memory is running out. Recording stopped; no speech was recognized.</source>
        <translation>Память заканчивается. Запись остановлена; речь не распознана.</translation>
    </message>
    <message>
        <source>There is too little memory to record.</source>
        <translation>Для записи слишком мало свободной памяти.</translation>
    </message>
    <message>
        <source>The application did not take the text. Copied — press %paste.</source>
        <translation>Программа не приняла текст. Скопировано — нажмите %paste.</translation>
    </message>
    <message>
        <source>Local model is missing: %1</source>
        <translation>Нет локальной модели: %1</translation>
    </message>
    <message>
        <source>Local transcription failed: %1</source>
        <translation>Сбой локального распознавания: %1</translation>
    </message>
    <message>
        <source>Microphone permission is required</source>
        <translation>Нужен доступ к микрофону</translation>
    </message>
    <message>
        <source>Local ASR worker is missing from the app</source>
        <translation>В программе нет модуля распознавания</translation>
    </message>
    <message>
        <source>Could not start microphone recording</source>
        <translation>Не удалось начать запись с микрофона</translation>
    </message>
    <message>
        <source>No speech was detected</source>
        <translation>Речь не обнаружена</translation>
    </message>
    <message>
        <source>The recording could not be recognized. Please try again.</source>
        <translation>Не удалось распознать запись. Попробуйте ещё раз.</translation>
    </message>
    <message>
        <source>Smart Local model or runtime is not installed</source>
        <translation>Языковая модель или её среда не установлена</translation>
    </message>
    <message>
        <source>Smart Local formatting failed; using the raw transcript</source>
        <translation>Сбой форматирования; используется исходный текст</translation>
    </message>
    <message>
        <source>Insertion stopped: you switched applications. Remaining text copied — press %paste.</source>
        <translation>Вставка остановлена: вы переключили программу. Остаток скопирован — нажмите %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped: the original application is unavailable. Remaining text copied — press %paste.</source>
        <translation>Вставка остановлена: исходная программа недоступна. Остаток скопирован — нажмите %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped: the original application is not active. Remaining text copied — press %paste.</source>
        <translation>Вставка остановлена: исходная программа неактивна. Остаток скопирован — нажмите %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped: a password field is in front. Remaining text copied — press %paste.</source>
        <translation>Вставка остановлена: активно поле пароля. Остаток скопирован — нажмите %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped: paste permission is unavailable. Remaining text copied — press %paste.</source>
        <translation>Вставка остановлена: нет разрешения на вставку. Остаток скопирован — нажмите %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped: the paste keys could not be sent. Remaining text copied — press %paste.</source>
        <translation>Вставка остановлена: не удалось отправить клавиши вставки. Остаток скопирован — нажмите %paste.</translation>
    </message>
    <message>
        <source>Insertion stopped. Remaining text copied — press %paste.</source>
        <translation>Вставка остановлена. Остаток скопирован — нажмите %paste.</translation>
    </message>
    <message>
        <source>Double tap Alt</source>
        <translation>Двойное нажатие Alt</translation>
    </message>
    <message>
        <source>Caps Lock</source>
        <translation>Caps Lock</translation>
    </message>
    <message>
        <source>No shortcut</source>
        <translation>Без сочетания клавиш</translation>
    </message>
    <message>
        <source>Not configured</source>
        <translation>Не задано</translation>
    </message>
    <message>
        <source>Hold the shortcut while speaking, then release it.</source>
        <translation>Удерживайте сочетание во время речи, затем отпустите.</translation>
    </message>
    <message>
        <source>Press Caps Lock once to start and again to stop. Its normal Caps Lock state changes too.</source>
        <translation>Нажмите Caps Lock, чтобы начать, и ещё раз, чтобы закончить. Обычное состояние Caps Lock тоже меняется.</translation>
    </message>
    <message>
        <source>Tap Alt twice to start, then twice again to stop.</source>
        <translation>Дважды нажмите Alt, чтобы начать, и ещё дважды, чтобы закончить.</translation>
    </message>
    <message>
        <source>Use the tray icon or floating recording control to start dictation.</source>
        <translation>Начинайте диктовку значком в трее или плавающим индикатором записи.</translation>
    </message>
    <message>
        <source>Input Monitoring lets your configured shortcut work while other apps are active.</source>
        <translation>Мониторинг ввода позволяет сочетанию клавиш работать, когда активны другие программы.</translation>
    </message>
    <message>
        <source>Record a shortcut</source>
        <translation>Запись сочетания клавиш</translation>
    </message>
    <message>
        <source>Press and release your shortcut three times</source>
        <translation>Трижды нажмите и отпустите сочетание</translation>
    </message>
    <message>
        <source>%1 detected</source>
        <translation>Обнаружено: %1</translation>
    </message>
    <message>
        <source>A single typing key would also type in your current app. Use Fn, Alt, Ctrl, or add a modifier.</source>
        <translation>Одиночная клавиша будет печатать и в текущей программе. Используйте Fn, Alt, Ctrl или добавьте модификатор.</translation>
    </message>
    <message>
        <source>%1 was detected. Super and Shift cannot be used alone because normal typing uses them constantly. Use Fn, Alt, Ctrl, or hold two modifiers together.</source>
        <translation>Обнаружено: %1. Super и Shift нельзя использовать отдельно: они постоянно нужны при наборе. Используйте Fn, Alt, Ctrl или два модификатора вместе.</translation>
    </message>
    <message>
        <source>Fn, Alt, and Ctrl work alone. Super and Shift must be combined with another modifier or a key. Press Esc to cancel.</source>
        <translation>Fn, Alt и Ctrl работают отдельно. Super и Shift нужно сочетать с другим модификатором или клавишей. Esc — отмена.</translation>
    </message>
    <message>
        <source>Secure local storage is unavailable. Changes remain in memory for this session and may not survive relaunch.</source>
        <translation>Защищённое локальное хранилище недоступно. Изменения остаются в памяти на этот сеанс и могут не сохраниться после перезапуска.</translation>
    </message>
    <message>
        <source>Your previous model, %1, is unavailable. Gemma was selected so you can stay offline. You can download and select your previous model in Speech Models.</source>
        <translation>Ваша прежняя модель, %1, недоступна. Чтобы вы могли работать без сети, выбрана Gemma. Скачать и выбрать прежнюю модель можно в разделе «Речевые модели».</translation>
    </message>
    <message>
        <source>All 28 languages, recognized automatically</source>
        <translation>Все 28 языков, автоматически</translation>
    </message>
    <message>
        <source>Qwen3 0.6B Q8 · Fast baseline</source>
        <translation>Qwen3 0.6B Q8 · Быстрая</translation>
    </message>
    <message>
        <source>Qwen3 1.7B Q8 · Balanced</source>
        <translation>Qwen3 1.7B Q8 · Сбалансированная</translation>
    </message>
    <message>
        <source>Qwen3 4B Q4 · Best quality</source>
        <translation>Qwen3 4B Q4 · Лучшее качество</translation>
    </message>
    <message>
        <source>Gemma 4 E2B Q4 · Recommended</source>
        <translation>Gemma 4 E2B Q4 · Рекомендуется</translation>
    </message>
    <message>
        <source>Parakeet TDT 0.6B v3 Q8 · Recommended</source>
        <translation>Parakeet TDT 0.6B v3 Q8 · Рекомендуется</translation>
    </message>
    <message>
        <source>Parakeet TDT 0.6B v3 Q4 · Small</source>
        <translation>Parakeet TDT 0.6B v3 Q4 · Малая</translation>
    </message>
    <message>
        <source>SAGE 95M · Russian</source>
        <translation>SAGE 95M · Русский</translation>
    </message>
    <message>
        <source>Preparing for fast dictation…</source>
        <translation>Подготовка к быстрой диктовке…</translation>
    </message>
    <message>
        <source>Ready · kept warm in memory</source>
        <translation>Готово · загружена в память</translation>
    </message>
    <message>
        <source>Preparation failed · original text remains available</source>
        <translation>Подготовка не удалась · исходный текст доступен</translation>
    </message>
    <message>
        <source>Recommended for Russian: SAGE 95M</source>
        <translation>Рекомендуется для русского: SAGE 95M</translation>
    </message>
    <message>
        <source>A compact Russian-specific correction candidate. Conservative mode uses only its punctuation and capitalization while preserving the exact ASR words.</source>
        <translation>Компактный корректор для русского. В консервативном режиме берутся только пунктуация и регистр, а распознанные слова сохраняются в точности.</translation>
    </message>
    <message>
        <source>Recommended for mixed languages: %1</source>
        <translation>Рекомендуется для смешанных языков: %1</translation>
    </message>
    <message>
        <source>Use a multilingual model in Conservative mode. Murmel projects punctuation onto the original ASR words, so a model cannot remove or replace them.</source>
        <translation>Используйте многоязычную модель в консервативном режиме. Murmel переносит пунктуацию на распознанные слова, поэтому модель не может их удалить или заменить.</translation>
    </message>
    <message>
        <source>Recommended model: %1</source>
        <translation>Рекомендуемая модель: %1</translation>
    </message>
    <message>
        <source>No language-specific corrector has passed Murmel&apos;s benchmark for this profile yet. Conservative mode preserves the raw wording.</source>
        <translation>Для этого профиля ещё ни один корректор не прошёл проверку Murmel. Консервативный режим сохраняет исходные слова.</translation>
    </message>
    <message>
        <source>There is no other speech model for this computer.</source>
        <translation>Для этого компьютера нет другой речевой модели.</translation>
    </message>
    <message>
        <source>The model is installed.</source>
        <translation>Модель установлена.</translation>
    </message>
    <message>
        <source>The model downloader is missing from the app or is not the app&apos;s own.</source>
        <translation>Загрузчик моделей отсутствует или не принадлежит программе.</translation>
    </message>
    <message>
        <source>The model downloader could not be started: %1</source>
        <translation>Не удалось запустить загрузчик моделей: %1</translation>
    </message>
    <message>
        <source>This file is not on the list of approved downloads.</source>
        <translation>Этого файла нет в списке разрешённых загрузок.</translation>
    </message>
    <message>
        <source>The model downloader ended unexpectedly.</source>
        <translation>Загрузчик моделей неожиданно завершился.</translation>
    </message>
    <message>
        <source>Full edition</source>
        <translation>Полная версия</translation>
    </message>
    <message>
        <source>Lite edition</source>
        <translation>Облегчённая версия</translation>
    </message>
    <message>
        <source>Development build</source>
        <translation>Сборка для разработки</translation>
    </message>
    <message>
        <source>Ready offline · Models included</source>
        <translation>Готово офлайн · модели включены</translation>
    </message>
    <message>
        <source>Lite · Models on demand</source>
        <translation>Lite · модели по запросу</translation>
    </message>
    <message>
        <source>Local development</source>
        <translation>Локальная разработка</translation>
    </message>
    <message>
        <source>Finish enabling Automatic Paste</source>
        <translation>Завершите включение автоматической вставки</translation>
    </message>
    <message>
        <source>The desktop needs a fresh %1 process to apply this permission. The app will reopen automatically, and an active Parakeet download will resume. You do not need to restart your computer.</source>
        <translation>Чтобы разрешение подействовало, нужен новый процесс %1. Программа откроется сама, а активная загрузка Parakeet продолжится. Перезагружать компьютер не нужно.</translation>
    </message>
    <message>
        <source>Quit &amp; Reopen</source>
        <translation>Закрыть и открыть снова</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Не сейчас</translation>
    </message>
    <message>
        <source>%1 could not reopen</source>
        <translation>Не удалось снова открыть %1</translation>
    </message>
    <message>
        <source>This build cannot download models.</source>
        <translation>Эта сборка не может скачивать модели.</translation>
    </message>
    <message>
        <source>This computer&apos;s processor cannot run it.</source>
        <translation>Процессор этого компьютера не может её выполнять.</translation>
    </message>
    <message>
        <source>The key ring is locked.</source>
        <translation>Связка ключей заблокирована.</translation>
    </message>
    <message>
        <source>No key ring (Secret Service) answers on this desktop.</source>
        <translation>На этом рабочем столе не отвечает связка ключей (Secret Service).</translation>
    </message>
    <message>
        <source>The key ring stayed locked.</source>
        <translation>Связка ключей осталась заблокированной.</translation>
    </message>
    <message>
        <source>The system has no random bytes.</source>
        <translation>Система не даёт случайных байтов.</translation>
    </message>
    <message>
        <source>The key ring answered with an error.</source>
        <translation>Связка ключей ответила ошибкой.</translation>
    </message>
    <message>
        <source>The file is not a sealed file</source>
        <translation>Файл не является запечатанным</translation>
    </message>
    <message>
        <source>The key of the sealed file is not available</source>
        <translation>Ключ запечатанного файла недоступен</translation>
    </message>
    <message>
        <source>The sealed file was changed since it was written</source>
        <translation>Запечатанный файл изменён после записи</translation>
    </message>
    <message>
        <source>The sealed file holds something else than it should</source>
        <translation>В запечатанном файле не то, что должно быть</translation>
    </message>
    <message>
        <source>The file does not hold settings of Murmel.</source>
        <translation>В файле нет настроек Murmel.</translation>
    </message>
    <message>
        <source>The key ring has no default collection yet: its own program (in KDE, the wallet manager) makes one.</source>
        <translation>В связке ключей ещё нет основной коллекции: её создаёт её собственная программа (в KDE — менеджер бумажников).</translation>
    </message>
    <message>
        <source>The file could not be accessed: %1</source>
        <translation>Нет доступа к файлу: %1</translation>
    </message>
    <message>
        <source>The autostart entry cannot be written: %1</source>
        <translation>Не удаётся записать автозапуск: %1</translation>
    </message>
    <message>
        <source>The autostart entry cannot be changed: %1</source>
        <translation>Не удаётся изменить автозапуск: %1</translation>
    </message>
    <message>
        <source>There is no setting &quot;%1&quot;.</source>
        <translation>Нет настройки «%1».</translation>
    </message>
    <message>
        <source>unknown to the speech model in use</source>
        <translation>неизвестен используемой речевой модели</translation>
    </message>
    <message>
        <source>No text field had the keyboard. Copied — press %paste.</source>
        <translation>Ни одно текстовое поле не было активно. Скопировано — нажмите %paste.</translation>
    </message>
    <message>
        <source>Something else was copied before the application took the text. Choose Copy Last Dictation.</source>
        <translation>Прежде чем программа приняла текст, было скопировано что-то другое. Выберите «Копировать последнюю диктовку».</translation>
    </message>
    <message>
        <source>Your clipboard could not be kept.</source>
        <translation>Не удалось сохранить ваш буфер обмена.</translation>
    </message>
    <message>
        <source>The text could not be put on the clipboard. You find it in Murmel&apos;s menu.</source>
        <translation>Не удалось поместить текст в буфер обмена. Вы найдёте его в меню Murmel.</translation>
    </message>
    <message>
        <source>This desktop shows no tray icons. Start Murmel once more to open its windows, or use commands like “murmel settings”.</source>
        <translation>В этой среде нет значков в трее. Запустите Murmel ещё раз, чтобы открыть его окна, или используйте команды вроде «murmel settings».</translation>
    </message>
    <message>
        <source>Another program has reserved these keys: both would hear them.</source>
        <translation>Эти клавиши заняты другой программой: их услышат обе.</translation>
    </message>
    <message>
        <source>This keyboard layout makes another key of Caps Lock, so the shortcut would do nothing.</source>
        <translation>В этой раскладке Caps Lock — другая клавиша, и сочетание не сработает.</translation>
    </message>
    <message>
        <source>Every Ctrl+C and Ctrl+V would start a dictation too.</source>
        <translation>Каждое Ctrl+C и Ctrl+V тоже начинало бы диктовку.</translation>
    </message>
    <message>
        <source>Alt opens menus, and every Alt+Tab would start a dictation too.</source>
        <translation>Alt открывает меню, и каждое Alt+Tab тоже начинало бы диктовку.</translation>
    </message>
    <message>
        <source>Many keyboards switch their layout with these keys.</source>
        <translation>На многих клавиатурах этими клавишами переключают раскладку.</translation>
    </message>
    <message>
        <source>Programs made with GTK write the letter too, for they do not know Super.</source>
        <translation>Программы на GTK напишут и букву: они не знают клавиши Super.</translation>
    </message>
    <message>
        <source>Alt+Space opens the menu of the window in front.</source>
        <translation>Alt+Пробел открывает меню переднего окна.</translation>
    </message>
    <message>
        <source>Alt with a letter opens menus in many programs.</source>
        <translation>Alt с буквой открывает меню во многих программах.</translation>
    </message>
    <message>
        <source>Programs use Ctrl with a letter to copy, paste, undo and the like.</source>
        <translation>Программы используют Ctrl с буквой, чтобы копировать, вставлять, отменять и тому подобное.</translation>
    </message>
    <message>
        <source>Input methods and editors use Ctrl+Space.</source>
        <translation>Методы ввода и редакторы используют Ctrl+Пробел.</translation>
    </message>
    <message>
        <source>Most keyboards keep the Fn key to themselves, and X11 cannot carry it. If holding Fn does nothing, choose Ctrl, Alt or a key combination as the shortcut.</source>
        <translation>Большинство клавиатур не передаёт клавишу Fn, и X11 не может её передать. Если удержание Fn ничего не делает, выберите Ctrl, Alt или сочетание клавиш.</translation>
    </message>
    <message>
        <source>Wayland lets no application hear keys while another one is in front. Bind a key to the command &quot;murmel toggle&quot; in the keyboard settings of your desktop.</source>
        <translation>Wayland не даёт приложениям слышать клавиши, пока впереди другое. Назначьте клавишу на команду «murmel toggle» в настройках клавиатуры вашей среды.</translation>
    </message>
    <message>
        <source>There is no display (DISPLAY is not set).</source>
        <translation>Нет дисплея (DISPLAY не задан).</translation>
    </message>
    <message>
        <source>The X server cannot be reached.</source>
        <translation>X-сервер недоступен.</translation>
    </message>
    <message>
        <source>The X server has no screen.</source>
        <translation>У X-сервера нет экрана.</translation>
    </message>
    <message>
        <source>The X server has no XInput extension, so keys cannot be heard globally.</source>
        <translation>У X-сервера нет расширения XInput, поэтому клавиши нельзя слышать везде.</translation>
    </message>
    <message>
        <source>The X server&apos;s XInput is older than 2.2, so keys cannot be heard globally.</source>
        <translation>XInput X-сервера старше версии 2.2, поэтому клавиши нельзя слышать везде.</translation>
    </message>
    <message>
        <source>The X server has no XKB extension, so keys cannot be told apart.</source>
        <translation>У X-сервера нет расширения XKB, поэтому клавиши нельзя различить.</translation>
    </message>
    <message>
        <source>The X server does not let this application hear keys.</source>
        <translation>X-сервер не даёт этому приложению слышать клавиши.</translation>
    </message>
    <message>
        <source>The list of updates cannot be read.</source>
        <translation>Список обновлений не читается.</translation>
    </message>
    <message>
        <source>The list of updates is not signed by the makers of this app.</source>
        <translation>Список обновлений не подписан создателями этой программы.</translation>
    </message>
    <message>
        <source>The list of updates is out of date. Check the computer&apos;s clock, or try again later.</source>
        <translation>Список обновлений устарел. Проверьте часы компьютера или попробуйте позже.</translation>
    </message>
    <message>
        <source>The list of updates is older than one that was seen before.</source>
        <translation>Список обновлений старее уже виденного.</translation>
    </message>
    <message>
        <source>New versions come from the store that this app came from.</source>
        <translation>Новые версии приходят из магазина, откуда взята эта программа.</translation>
    </message>
    <message>
        <source>This build belongs to no release, so there is nothing that could update it.</source>
        <translation>Эта сборка не относится ни к одному выпуску, обновить её нечем.</translation>
    </message>
    <message>
        <source>This copy was built here; build it again to update it.</source>
        <translation>Эта копия собрана здесь; чтобы обновить, соберите её заново.</translation>
    </message>
    <message>
        <source>The server with the list of updates cannot be reached.</source>
        <translation>Сервер со списком обновлений недоступен.</translation>
    </message>
    <message>
        <source>The list of updates is too long.</source>
        <translation>Список обновлений слишком длинный.</translation>
    </message>
    <message>
        <source>The server has no list of updates.</source>
        <translation>На сервере нет списка обновлений.</translation>
    </message>
    <message>
        <source>The new version did not arrive as it was released.</source>
        <translation>Новая версия пришла не такой, какой была выпущена.</translation>
    </message>
    <message>
        <source>The new version holds something that does not belong there.</source>
        <translation>В новой версии есть то, чего там быть не должно.</translation>
    </message>
    <message>
        <source>The new version is not what the list of updates says.</source>
        <translation>Новая версия не та, что указана в списке обновлений.</translation>
    </message>
    <message>
        <source>The new version does not start on this computer; the one before was kept.</source>
        <translation>Новая версия на этом компьютере не запускается; прежняя сохранена.</translation>
    </message>
    <message>
        <source>The updater is missing from the app or is not the app&apos;s own.</source>
        <translation>Программа обновления отсутствует или не принадлежит этому приложению.</translation>
    </message>
    <message>
        <source>The updater ended unexpectedly.</source>
        <translation>Программа обновления неожиданно завершилась.</translation>
    </message>
    <message>
        <source>The update was stopped.</source>
        <translation>Обновление остановлено.</translation>
    </message>
    <message>
        <source>The updater could not be started: %1</source>
        <translation>Не удалось запустить программу обновления: %1</translation>
    </message>
    <message>
        <source>The update is installed. Start Murmel again: %1</source>
        <translation>Обновление установлено. Запустите Murmel снова: %1</translation>
    </message>
    <message>
        <source>Edition</source>
        <translation>Редакция</translation>
    </message>
    <message>
        <source>Desktop</source>
        <translation>Рабочая среда</translation>
    </message>
    <message>
        <source>Speech model</source>
        <translation>Модель речи</translation>
    </message>
    <message>
        <source>Speech recognition</source>
        <translation>Распознавание речи</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Микрофон</translation>
    </message>
    <message>
        <source>Global shortcut</source>
        <translation>Глобальное сочетание клавиш</translation>
    </message>
    <message>
        <source>Automatic paste</source>
        <translation>Автоматическая вставка</translation>
    </message>
    <message>
        <source>Password fields</source>
        <translation>Поля паролей</translation>
    </message>
    <message>
        <source>Key ring</source>
        <translation>Связка ключей</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Файлы</translation>
    </message>
    <message>
        <source>Formatting</source>
        <translation>Форматирование</translation>
    </message>
    <message>
        <source>Session bus</source>
        <translation>Сеансовая шина</translation>
    </message>
    <message>
        <source>Tray</source>
        <translation>Трей</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Загрузить</translation>
    </message>
    <message>
        <source>Sound Settings</source>
        <translation>Настройки звука</translation>
    </message>
    <message>
        <source>Choose Shortcut</source>
        <translation>Выбрать сочетание</translation>
    </message>
    <message>
        <source>Allow</source>
        <translation>Разрешить</translation>
    </message>
    <message>
        <source>There is no speech model in %1. Download one, or install pocketsphinx-en-us.</source>
        <translation>В %1 нет модели речи. Загрузите модель или установите pocketsphinx-en-us.</translation>
    </message>
    <message>
        <source>The speech model in %1 is damaged. Download it again.</source>
        <translation>Модель речи в %1 повреждена. Загрузите её снова.</translation>
    </message>
    <message>
        <source>The worker is missing: %1</source>
        <translation>Нет программы распознавания: %1</translation>
    </message>
    <message>
        <source>The worker is not signed by the makers of this Murmel.</source>
        <translation>Программа распознавания не подписана изготовителями этого Murmel.</translation>
    </message>
    <message>
        <source>The language-model server is not installed (%1): text stays as it was recognised.</source>
        <translation>Сервер языковых моделей не установлен (%1): текст остаётся таким, каким распознан.</translation>
    </message>
    <message>
        <source>The sound server refuses this user.</source>
        <translation>Звуковой сервер отказывает этому пользователю.</translation>
    </message>
    <message>
        <source>This sandbox has no access to the sound server.</source>
        <translation>Из этой песочницы нет доступа к звуковому серверу.</translation>
    </message>
    <message>
        <source>No sound server answers. Start PulseAudio or PipeWire.</source>
        <translation>Звуковой сервер не отвечает. Запустите PulseAudio или PipeWire.</translation>
    </message>
    <message>
        <source>There is no microphone: the sound server has no source.</source>
        <translation>Микрофона нет: у звукового сервера нет источника.</translation>
    </message>
    <message>
        <source>There is no microphone: only what the speakers play is heard.</source>
        <translation>Микрофона нет: слышно только то, что играют динамики.</translation>
    </message>
    <message>
        <source>The microphone delivers digital silence. It may be muted or switched off.</source>
        <translation>Микрофон передаёт полную тишину. Возможно, он приглушён или выключен.</translation>
    </message>
    <message>
        <source>The microphone was opened, but delivers nothing.</source>
        <translation>Микрофон открыт, но ничего не передаёт.</translation>
    </message>
    <message>
        <source>There is no desktop to hear it on.</source>
        <translation>Нет рабочей среды, где его можно слышать.</translation>
    </message>
    <message>
        <source>There is no desktop to paste on.</source>
        <translation>Нет рабочей среды, куда вставлять.</translation>
    </message>
    <message>
        <source>There is no desktop with applications that tell of them.</source>
        <translation>Нет рабочей среды с приложениями, которые о них сообщают.</translation>
    </message>
    <message>
        <source>This desktop lets no program press keys (on X11: the XTest extension is missing). Text is copied, for you to paste.</source>
        <translation>Эта среда не даёт программам нажимать клавиши (в X11 нет расширения XTest). Текст копируется, вставьте его сами.</translation>
    </message>
    <message>
        <source>In this Wayland session text is pasted into X programs only, and copied otherwise.</source>
        <translation>В этом сеансе Wayland текст вставляется только в программы X, а иначе копируется.</translation>
    </message>
    <message>
        <source>No window manager tells which window is active. Text is copied, for you to paste.</source>
        <translation>Ни один менеджер окон не сообщает, какое окно активно. Текст копируется, вставьте его сами.</translation>
    </message>
    <message>
        <source>The keyboard layout has no keys to paste with. Text is copied, for you to paste.</source>
        <translation>В раскладке нет клавиш для вставки. Текст копируется, вставьте его сами.</translation>
    </message>
    <message>
        <source>GTK programs tell of them, Qt programs and browsers only while assistive technologies are switched on. Prompts that take the keyboard for themselves are seen in any case.</source>
        <translation>Программы на GTK сообщают о них, программы на Qt и браузеры — только пока включены вспомогательные технологии. Запросы, захватывающие клавиатуру, видны в любом случае.</translation>
    </message>
    <message>
        <source>They look like other fields: the accessibility bus (at-spi2-core) does not run. Prompts that take the keyboard for themselves are seen all the same.</source>
        <translation>Они выглядят как обычные поля: шина доступности (at-spi2-core) не запущена. Запросы, захватывающие клавиатуру, видны и так.</translation>
    </message>
    <message>
        <source>It is locked. History and vocabulary stay in memory until it is unlocked.</source>
        <translation>Она заблокирована. История и словарь остаются в памяти, пока её не разблокируют.</translation>
    </message>
    <message>
        <source>No secret service answers. History and vocabulary stay in memory only.</source>
        <translation>Служба секретов не отвечает. История и словарь остаются только в памяти.</translation>
    </message>
    <message>
        <source>Settings cannot be kept: %1 cannot be written to.</source>
        <translation>Настройки нельзя сохранить: в %1 нельзя писать.</translation>
    </message>
    <message>
        <source>History and models cannot be kept: %1 cannot be written to.</source>
        <translation>Историю и модели нельзя сохранить: в %1 нельзя писать.</translation>
    </message>
    <message>
        <source>There is none, or it does not answer: commands like “murmel toggle” cannot reach the running Murmel.</source>
        <translation>Её нет, или она не отвечает: команды вроде «murmel toggle» не достигают работающего Murmel.</translation>
    </message>
    <message>
        <source>This desktop has none. Use the shortcut or commands like “murmel settings”.</source>
        <translation>В этой среде его нет. Используйте сочетание клавиш или команды вроде «murmel settings».</translation>
    </message>
    <message>
        <source>Hears 25 languages, the best of those that run here.</source>
        <translation>Слышит 25 языков, лучшая из тех, что здесь работают.</translation>
    </message>
    <message>
        <source>The same in half the space, with a few more mistakes.</source>
        <translation>То же в половину меньшего объёма, с чуть большим числом ошибок.</translation>
    </message>
    <message>
        <source>Hears about a hundred languages, and runs on older machines.</source>
        <translation>Слышит около ста языков и работает на старых машинах.</translation>
    </message>
    <message>
        <source>Punctuation and capitals in many languages.</source>
        <translation>Пунктуация и заглавные буквы на многих языках.</translation>
    </message>
    <message>
        <source>Punctuation and capitals on a small machine.</source>
        <translation>Пунктуация и заглавные буквы на слабой машине.</translation>
    </message>
    <message>
        <source>Punctuation and capitals, between fast and good.</source>
        <translation>Пунктуация и заглавные буквы, между быстрым и хорошим.</translation>
    </message>
    <message>
        <source>Punctuation and capitals, slower and better.</source>
        <translation>Пунктуация и заглавные буквы, медленнее и лучше.</translation>
    </message>
    <message>
        <source>Corrects Russian.</source>
        <translation>Исправляет русский текст.</translation>
    </message>
    <message>
        <source>Whisper base Q8 · Smallest</source>
        <translation>Whisper base Q8 · Самая маленькая</translation>
    </message>
    <message>
        <source>Its engine is not in this build, or this processor is too old for it.</source>
        <translation>Её движка нет в этой сборке, или процессор для неё слишком стар.</translation>
    </message>
    <message>
        <source>This build has no corrector for Russian.</source>
        <translation>В этой сборке нет корректора русского.</translation>
    </message>
    <message>
        <source>This build has no server for language models.</source>
        <translation>В этой сборке нет сервера языковых моделей.</translation>
    </message>
    <message>
        <source>The settings file %1 is read-only. Changes are kept in memory.</source>
        <translation>Файл настроек %1 только для чтения. Изменения остаются в памяти.</translation>
    </message>
    <message>
        <source>The screen was locked while you dictated. Copied — press %paste.</source>
        <translation>Экран был заблокирован во время диктовки. Скопировано — нажмите %paste.</translation>
    </message>
    <message>
        <source>Murmel ended before your words could be inserted. They are on the clipboard — press %paste.</source>
        <translation>Murmel завершился раньше, чем удалось вставить слова. Они в буфере обмена — нажмите %paste.</translation>
    </message>
    <message>
        <source>Murmel ended before everything was recognized. The first part is on the clipboard — press %paste.</source>
        <translation>Murmel завершился раньше, чем всё было распознано. Первая часть в буфере обмена — нажмите %paste.</translation>
    </message>
    <message>
        <source>Murmel ended before your last words were recognized.</source>
        <translation>Murmel завершился раньше, чем были распознаны последние слова.</translation>
    </message>
    <message>
        <source>Cannot run here: %1.</source>
        <translation>Здесь не работает: %1.</translation>
    </message>
    <message>
        <source>Still transcribing the last dictation…</source>
        <translation>Предыдущая диктовка ещё распознаётся…</translation>
    </message>
    <message>
        <source>Opening the microphone…</source>
        <translation>Микрофон открывается…</translation>
    </message>
    <message>
        <source>The words are being inserted already.</source>
        <translation>Слова уже вставляются.</translation>
    </message>
    <message>
        <source>Nothing is being dictated.</source>
        <translation>Ничего не диктуется.</translation>
    </message>
    <message>
        <source>Murmel is about to end.</source>
        <translation>Murmel сейчас завершится.</translation>
    </message>
    <message>
        <source>Murmel is ending.</source>
        <translation>Murmel завершается.</translation>
    </message>
    <message>
        <source>Murmel cannot do that now.</source>
        <translation>Сейчас Murmel не может этого сделать.</translation>
    </message>
    <message>
        <source>A dictation is under way.</source>
        <translation>Идёт диктовка.</translation>
    </message>
    <message>
        <source>There is no failed or cancelled dictation to try again.</source>
        <translation>Нет неудавшейся или отменённой диктовки, которую можно повторить.</translation>
    </message>
    <message>
        <source>The kept recording cannot be read any more.</source>
        <translation>Сохранённую запись больше нельзя прочитать.</translation>
    </message>
    <message>
        <source>The last dictation is still being transcribed.</source>
        <translation>Предыдущая диктовка ещё распознаётся.</translation>
    </message>
    <message>
        <source>Murmel is listening already.</source>
        <translation>Murmel уже слушает.</translation>
    </message>
    <message>
        <source>Nothing is being recorded.</source>
        <translation>Запись не идёт.</translation>
    </message>
    <message>
        <source>There is no dictation to copy.</source>
        <translation>Нет диктовки, которую можно скопировать.</translation>
    </message>
    <message>
        <source>There is no dictation to paste.</source>
        <translation>Нет диктовки, которую можно вставить.</translation>
    </message>
    <message>
        <source>Another session is in front.</source>
        <translation>На экране другой сеанс.</translation>
    </message>
    <message>
        <source>The computer is going to sleep.</source>
        <translation>Компьютер засыпает.</translation>
    </message>
    <message>
        <source>The screen is locked.</source>
        <translation>Экран заблокирован.</translation>
    </message>
    <message>
        <source>The application did not take the last dictation. It is on the clipboard — press %paste.</source>
        <translation>Программа не приняла последнюю диктовку. Она в буфере обмена — нажмите %paste.</translation>
    </message>
    <message>
        <source>model process exited</source>
        <translation>процесс модели завершился</translation>
    </message>
    <message>
        <source>two answers in a row took too long</source>
        <translation>два ответа подряд заняли слишком много времени</translation>
    </message>
    <message>
        <source>an answer was not understood</source>
        <translation>ответ не удалось понять</translation>
    </message>
    <message>
        <source>too many open files</source>
        <translation>слишком много открытых файлов</translation>
    </message>
    <message>
        <source>inference server exited while starting</source>
        <translation>сервер завершился при запуске</translation>
    </message>
    <message>
        <source>inference server did not become ready</source>
        <translation>сервер так и не стал готов</translation>
    </message>
    <message>
        <source>running inference server identity validation failed</source>
        <translation>работает не тот сервер, который ожидался</translation>
    </message>
    <message>
        <source>running correction worker identity validation failed</source>
        <translation>работает не та программа исправления, которая ожидалась</translation>
    </message>
    <message>
        <source>correction worker signature validation failed</source>
        <translation>подпись программы исправления неверна</translation>
    </message>
    <message>
        <source>%1 is not installed; “%2” brings it</source>
        <translation>%1 не установлен; его установит «%2»</translation>
    </message>
    <message>
        <source>%1 is not as its makers signed it; “%2” brings it again</source>
        <translation>%1 не такой, каким его подписали авторы; «%2» установит его заново</translation>
    </message>
    <message>
        <source>llama-server needs a processor with AVX2</source>
        <translation>llama-server требует процессор с AVX2</translation>
    </message>
    <message>
        <source>the ONNX Runtime</source>
        <translation>ONNX Runtime</translation>
    </message>
    <message>
        <source>its engine is not in this build, or this processor is too old for it</source>
        <translation>его движка нет в этой сборке, или процессор для него слишком стар</translation>
    </message>
    <message>
        <source>it needs %1 GB of memory, and this computer has %2 GB</source>
        <translation>ему нужно %1 ГБ памяти, а у этого компьютера %2 ГБ</translation>
    </message>
    <message>
        <source>Where this model is published has never been confirmed, so it cannot be downloaded.</source>
        <translation>Где опубликована эта модель, не подтверждено, поэтому загрузить её нельзя.</translation>
    </message>
    <message>
        <source>There is not enough disk space: %1 are needed, %2 are free.</source>
        <translation>Не хватает места на диске: нужно %1, свободно %2.</translation>
    </message>
    <message>
        <source>There is not enough disk space for the model.</source>
        <translation>На диске не хватает места для модели.</translation>
    </message>
    <message>
        <source>Another download into this folder is running.</source>
        <translation>В эту папку уже идёт другая загрузка.</translation>
    </message>
    <message>
        <source>Something else is where the folder %1 of the model store belongs.</source>
        <translation>На месте папки моделей %1 находится что-то другое.</translation>
    </message>
    <message>
        <source>A folder is where the model file belongs: %1</source>
        <translation>На месте файла модели находится папка: %1</translation>
    </message>
    <message>
        <source>The model host offers a file of another size (%1 bytes instead of %2).</source>
        <translation>Сервер моделей предлагает файл другого размера (%1 байт вместо %2).</translation>
    </message>
    <message>
        <source>The model host refuses the file (HTTP %1).</source>
        <translation>Сервер моделей не отдаёт файл (HTTP %1).</translation>
    </message>
    <message>
        <source>The model host does not have the file (HTTP %1).</source>
        <translation>На сервере моделей нет этого файла (HTTP %1).</translation>
    </message>
    <message>
        <source>The model host asks to slow down (HTTP 429). Try again later.</source>
        <translation>Сервер моделей просит подождать (HTTP 429). Попробуйте позже.</translation>
    </message>
    <message>
        <source>The model host failed (HTTP %1). Try again later.</source>
        <translation>На сервере моделей ошибка (HTTP %1). Попробуйте позже.</translation>
    </message>
    <message>
        <source>The model host did not answer in time.</source>
        <translation>Сервер моделей не ответил вовремя.</translation>
    </message>
    <message>
        <source>The model host redirects to an address that is not encrypted.</source>
        <translation>Сервер моделей отправляет на незашифрованный адрес.</translation>
    </message>
    <message>
        <source>The model host could not prove its identity.</source>
        <translation>Сервер моделей не смог подтвердить, что это он.</translation>
    </message>
    <message>
        <source>The model host could not be found. Is this computer online?</source>
        <translation>Сервер моделей не найден. Есть ли у компьютера сеть?</translation>
    </message>
    <message>
        <source>The model host could not be reached.</source>
        <translation>Сервер моделей недоступен.</translation>
    </message>
    <message>
        <source>The model host sends from one address to the next without end.</source>
        <translation>Сервер моделей без конца отправляет с одного адреса на другой.</translation>
    </message>
    <message>
        <source>The connection to the model host was lost.</source>
        <translation>Связь с сервером моделей потеряна.</translation>
    </message>
    <message>
        <source>The model host sent more than the file has.</source>
        <translation>Сервер моделей прислал больше, чем есть в файле.</translation>
    </message>
    <message>
        <source>What the model host sent is not the approved file; it was thrown away.</source>
        <translation>Сервер моделей прислал не тот файл, который одобрен; он отброшен.</translation>
    </message>
    <message>
        <source>There is no new version to install.</source>
        <translation>Нет новой версии, которую можно установить.</translation>
    </message>
    <message>
        <source>This version is not on the list of updates.</source>
        <translation>Этой версии нет в списке обновлений.</translation>
    </message>
    <message>
        <source>This build does not know where its updates come from.</source>
        <translation>Эта сборка не знает, откуда берутся её обновления.</translation>
    </message>
    <message>
        <source>The download was stopped.</source>
        <translation>Загрузка остановлена.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be read (%2). It stays as it is; changes are kept in memory.</source>
        <translation>Файл настроек %1 не читается (%2). Он остаётся как есть; изменения хранятся в памяти.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be understood: %2. The last good settings are in force.</source>
        <translation>Файл настроек %1 не удаётся понять: %2. Действуют последние исправные настройки.</translation>
    </message>
    <message>
        <source>The settings file was damaged (%1). It was set aside as %2.</source>
        <translation>Файл настроек был повреждён (%1). Он отложен как %2.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be made (%2). Changes are kept in memory.</source>
        <translation>Файл настроек %1 нельзя создать (%2). Изменения хранятся в памяти.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be set aside (%2). Changes are kept in memory.</source>
        <translation>Файл настроек %1 нельзя отложить (%2). Изменения хранятся в памяти.</translation>
    </message>
    <message>
        <source>The settings file %1 cannot be written (%2). Changes are kept in memory.</source>
        <translation>Файл настроек %1 нельзя записать (%2). Изменения хранятся в памяти.</translation>
    </message>
    <message>
        <source>The setting &quot;%1&quot; cannot be taken over. %2</source>
        <translation>Настройку «%1» нельзя принять. %2</translation>
    </message>
    <message>
        <source>It can be true or false.</source>
        <translation>Возможны true и false.</translation>
    </message>
    <message>
        <source>It can be %1, or the JSON of a shortcut.</source>
        <translation>Возможны %1 или JSON сочетания клавиш.</translation>
    </message>
    <message>
        <source>It can be %1.</source>
        <translation>Возможны %1.</translation>
    </message>
    <message>
        <source>It is a number of minutes from 0 to %1.</source>
        <translation>Это число минут от 0 до %1.</translation>
    </message>
    <message>
        <source>It is a list of %1.</source>
        <translation>Это список из %1.</translation>
    </message>
    <message>
        <source>It is neither text nor true or false.</source>
        <translation>Это не текст и не true или false.</translation>
    </message>
    <message>
        <source>Swap</source>
        <translation>Подкачка</translation>
    </message>
    <message>
        <source>Confinement</source>
        <translation>Изоляция</translation>
    </message>
    <message>
        <source>No helper process sees your files, other programs or a network it has no business with.</source>
        <translation>Ни один вспомогательный процесс не видит ваших файлов, других программ или сети, которая ему не нужна.</translation>
    </message>
    <message>
        <source>No helper process reaches your files, other programs or a network it has no business with. They can see names of files: this system lets nobody make namespaces.</source>
        <translation>Ни один вспомогательный процесс не достигает ваших файлов, других программ или сети, которая ему не нужна. Имена файлов они видят: эта система никому не даёт создавать пространства имён.</translation>
    </message>
    <message>
        <source>Helper processes are not confined: %1.</source>
        <translation>Вспомогательные процессы не изолированы: %1.</translation>
    </message>
    <message>
        <source>Helper processes can reach what they should not (%1).</source>
        <translation>Вспомогательные процессы достигают того, чего не должны (%1).</translation>
    </message>
    <message>
        <source>It does not answer.</source>
        <translation>Не отвечает.</translation>
    </message>
    <message>
        <source>Formatting is on.</source>
        <translation>Форматирование включено.</translation>
    </message>
    <message>
        <source>Formatting is off.</source>
        <translation>Форматирование выключено.</translation>
    </message>
    <message>
        <source>Language models cannot run here: %1.</source>
        <translation>Языковые модели здесь не работают: %1.</translation>
    </message>
    <message>
        <source>The corrector for Russian cannot run here: %1.</source>
        <translation>Исправление русского здесь не работает: %1.</translation>
    </message>
    <message>
        <source>The worker or its engine is not as the makers of this Murmel signed it. Install Murmel again.</source>
        <translation>Программа или её движок не такие, какими их подписали авторы этого Murmel. Установите Murmel заново.</translation>
    </message>
    <message>
        <source>No shortcut is set. The tray icon and “murmel toggle” start dictation.</source>
        <translation>Сочетание не задано. Диктовку начинают значок в трее и «murmel toggle».</translation>
    </message>
    <message>
        <source>The desktop does not let this program press keys after all. Text is copied, for you to paste.</source>
        <translation>Рабочий стол всё же не даёт программе нажимать клавиши. Текст копируется, вставьте его сами.</translation>
    </message>
    <message>
        <source>Text is copied, for you to paste.</source>
        <translation>Текст копируется, вставьте его сами.</translation>
    </message>
    <message>
        <source>History and vocabulary stay in memory until then.</source>
        <translation>До тех пор история и словарь остаются в памяти.</translation>
    </message>
    <message>
        <source>Only %1 can be kept out of %2; more of what you say may be written to it. Encrypt the swap, or raise the limit of locked memory (LimitMEMLOCK) to 8 MB.</source>
        <translation>Только %1 можно удержать вне %2; остальное из сказанного может туда попасть. Зашифруйте подкачку или поднимите предел закреплённой памяти (LimitMEMLOCK) до 8 МБ.</translation>
    </message>
    <message>
        <source>Murmel cannot start: %1 cannot be written to.</source>
        <translation>Murmel не может запуститься: в %1 нельзя писать.</translation>
    </message>
    <message>
        <source>Neither the X server nor the Wayland compositor of this session can be reached.</source>
        <translation>Недоступны ни X-сервер, ни композитор Wayland этого сеанса.</translation>
    </message>
    <message>
        <source>The X server that DISPLAY names cannot be reached.</source>
        <translation>X-сервер, названный в DISPLAY, недоступен.</translation>
    </message>
    <message>
        <source>The Wayland compositor that WAYLAND_DISPLAY names cannot be reached.</source>
        <translation>Композитор Wayland, названный в WAYLAND_DISPLAY, недоступен.</translation>
    </message>
    <message>
        <source>The Wayland compositor cannot be reached.</source>
        <translation>Композитор Wayland недоступен.</translation>
    </message>
    <message>
        <source>The Wayland compositor does not answer.</source>
        <translation>Композитор Wayland не отвечает.</translation>
    </message>
    <message>
        <source>There is no display.</source>
        <translation>Нет дисплея.</translation>
    </message>
    <message>
        <source>The X server lets no program press keys: its XTest extension is missing.</source>
        <translation>X-сервер не даёт программам нажимать клавиши: нет его расширения XTest.</translation>
    </message>
    <message>
        <source>The X server does not describe its keyboard (XKB).</source>
        <translation>X-сервер не описывает свою клавиатуру (XKB).</translation>
    </message>
    <message>
        <source>The X server does not tell of clipboard changes (XFixes).</source>
        <translation>X-сервер не сообщает об изменениях буфера обмена (XFixes).</translation>
    </message>
    <message>
        <source>No window manager tells which window is active.</source>
        <translation>Ни один оконный менеджер не сообщает, какое окно активно.</translation>
    </message>
    <message>
        <source>KWin lets installed programs alone press keys and see which window is active. Install Murmel&apos;s package, or its desktop file in ~/.local/share/applications, and start Murmel anew.</source>
        <translation>KWin позволяет нажимать клавиши и видеть активное окно только установленным программам. Установите пакет Murmel или его desktop-файл в ~/.local/share/applications и запустите Murmel заново.</translation>
    </message>
    <message>
        <source>This desktop lets no program press keys or see which window is active.</source>
        <translation>Этот рабочий стол не даёт программам нажимать клавиши и видеть активное окно.</translation>
    </message>
    <message>
        <source>This desktop lets no program hear a shortcut. Bind a key to the command “murmel toggle” in its settings.</source>
        <translation>Этот рабочий стол не даёт программам слышать сочетания клавиш. В его настройках назначьте клавишу на команду «murmel toggle».</translation>
    </message>
    <message>
        <source>The compositor lets no program press keys.</source>
        <translation>Композитор не даёт программам нажимать клавиши.</translation>
    </message>
    <message>
        <source>The compositor does not let this program press keys.</source>
        <translation>Композитор не даёт этой программе нажимать клавиши.</translation>
    </message>
    <message>
        <source>The compositor does not tell of its windows.</source>
        <translation>Композитор не сообщает о своих окнах.</translation>
    </message>
    <message>
        <source>The compositor lets no program without a window have the clipboard.</source>
        <translation>Композитор не даёт буфер обмена программам без окна.</translation>
    </message>
    <message>
        <source>There is no keyboard layout to press keys of (xkb-data).</source>
        <translation>Нет раскладки, чтобы нажимать клавиши (xkb-data).</translation>
    </message>
    <message>
        <source>PocketSphinx, US English</source>
        <translation>PocketSphinx, американский английский</translation>
    </message>
    <message>
        <source>Hears about a hundred languages; about 3 English words in 100 are wrong.</source>
        <translation>Понимает около ста языков; неверны примерно 3 английских слова из 100.</translation>
    </message>
    <message>
        <source>Hears US English alone; about 27 words in 100 are wrong, and it sets no punctuation.</source>
        <translation>Понимает только американский английский; неверны около 27 слов из 100, знаков препинания не ставит.</translation>
    </message>
    <message>
        <source>GNOME tells programs which window is active through an extension only. Murmel&apos;s can be enabled in its setup; if GNOME does not know it yet, log in again.</source>
        <translation>GNOME сообщает программам об активном окне только через расширение. Расширение Murmel можно включить при настройке; если GNOME его ещё не знает, войдите в сеанс заново.</translation>
    </message>
    <message>
        <source>This desktop cannot hear this key. Choose another one, F10 or Ctrl+Space for instance.</source>
        <translation>На этом рабочем столе такую клавишу не услышать. Выберите другую, например F10 или Ctrl+Пробел.</translation>
    </message>
    <message>
        <source>%1 cannot hear this key. Choose another one, F10 or Ctrl+Space for instance.</source>
        <translation>%1 не слышит эту клавишу. Выберите другую, например F10 или Ctrl+Пробел.</translation>
    </message>
    <message>
        <source>%1 tells nobody when a modifier key alone is let go of. Choose a key with modifiers, Ctrl+Space for instance.</source>
        <translation>%1 никому не сообщает, когда отпускают один модификатор. Выберите клавишу с модификаторами, например Ctrl+Пробел.</translation>
    </message>
    <message>
        <source>sway tells nobody when a modifier key is let go of. Choose a key with modifiers, Ctrl+Space for instance.</source>
        <translation>sway никому не сообщает, когда отпускают модификатор. Выберите клавишу с модификаторами, например Ctrl+Пробел.</translation>
    </message>
    <message>
        <source>KDE&apos;s service for global shortcuts does not answer.</source>
        <translation>Служба глобальных сочетаний KDE не отвечает.</translation>
    </message>
    <message>
        <source>KDE or another program has this shortcut. Choose another one, or take it away there in the system settings.</source>
        <translation>Это сочетание занято KDE или другой программой. Выберите другое или освободите его в параметрах системы.</translation>
    </message>
    <message>
        <source>GNOME&apos;s settings daemon, which listens for shortcuts, is not installed. Enable Murmel&apos;s extension instead.</source>
        <translation>Служба параметров GNOME, которая слушает сочетания, не установлена. Вместо неё включите расширение Murmel.</translation>
    </message>
    <message>
        <source>KWin does not let this program press keys.</source>
        <translation>KWin не разрешает этой программе нажимать клавиши.</translation>
    </message>
    <message>
        <source>KWin does not tell this program of its windows.</source>
        <translation>KWin не сообщает этой программе о своих окнах.</translation>
    </message>
    <message>
        <source>The desktop did not bind the shortcut. %1</source>
        <translation>Рабочий стол не назначил сочетание. %1</translation>
    </message>
    <message>
        <source>The desktop has bound the shortcut, but does not tell of it. %1</source>
        <translation>Рабочий стол назначил сочетание, но не сообщает о нём. %1</translation>
    </message>
    <message>
        <source>Press the shortcut once: whether this desktop tells of it is known then. Where it does not, another way is taken.</source>
        <translation>Нажмите сочетание один раз: тогда станет известно, сообщает ли о нём этот рабочий стол. Если нет, будет выбран другой способ.</translation>
    </message>
    <message>
        <source>The desktop is asking you whether Murmel may press keys.</source>
        <translation>Рабочий стол спрашивает вас, можно ли Murmel нажимать клавиши.</translation>
    </message>
    <message>
        <source>The desktop did not let Murmel press keys when it was asked to.</source>
        <translation>На запрос рабочий стол не разрешил Murmel нажимать клавиши.</translation>
    </message>
    <message>
        <source>The desktop lets Murmel press keys no more: its permission was ended.</source>
        <translation>Рабочий стол больше не разрешает Murmel нажимать клавиши: разрешение отозвано.</translation>
    </message>
    <message>
        <source>The desktop lets Murmel press keys once you have allowed it: it asks you then. A Murmel that runs may have been allowed already.</source>
        <translation>Рабочий стол разрешит Murmel нажимать клавиши, когда вы это позволите: тогда он спросит вас. Работающему Murmel это могло быть уже разрешено.</translation>
    </message>
    <message>
        <source>The desktop lets Murmel press keys once you have allowed it, after each start of Murmel.</source>
        <translation>Рабочий стол разрешит Murmel нажимать клавиши, когда вы это позволите, после каждого запуска Murmel заново.</translation>
    </message>
    <message>
        <source>Text is pasted through the desktop&apos;s portal, into applications that tell of their windows on the accessibility bus.</source>
        <translation>Текст вставляется через портал рабочего стола в приложения, которые сообщают о своих окнах по шине специальных возможностей.</translation>
    </message>
    <message>
        <source>Which window is active is told on the accessibility bus (at-spi2-core) alone here, which does not run.</source>
        <translation>Какое окно активно, здесь сообщается только по шине специальных возможностей (at-spi2-core), а она не работает.</translation>
    </message>
    <message>
        <source>Murmel ended before your words could be inserted, and the clipboard did not take them.</source>
        <translation>Murmel завершил работу раньше, чем удалось вставить ваши слова, и буфер обмена их не принял.</translation>
    </message>
    <message>
        <source>The text could not be put on the clipboard.</source>
        <translation>Текст не удалось поместить в буфер обмена.</translation>
    </message>
    <message>
        <source>This desktop keeps no clipboard of a program that has ended: paste within ten seconds.</source>
        <translation>Этот рабочий стол не хранит буфер обмена завершённых программ: вставьте текст в течение десяти секунд.</translation>
    </message>
    <message>
        <source>The last dictations could not be kept in the history.</source>
        <translation>Последние диктовки не удалось сохранить в истории.</translation>
    </message>
</context>
<context>
    <name>MicrophoneStep</name>
    <message>
        <source>Microphone</source>
        <translation>Микрофон</translation>
    </message>
    <message>
        <source>Say a sentence as you would dictate it, and watch the level.</source>
        <translation>Скажите фразу так, как диктовали бы её, и следите за уровнем.</translation>
    </message>
    <message>
        <source>Microphone in use</source>
        <translation>Используемый микрофон</translation>
    </message>
    <message>
        <source>Choosing another one changes it for the whole desktop.</source>
        <translation>Выбор другого изменит его для всей среды.</translation>
    </message>
    <message>
        <source>This session has no list of microphones.</source>
        <translation>В этом сеансе нет списка микрофонов.</translation>
    </message>
    <message>
        <source>Speak now</source>
        <translation>Говорите</translation>
    </message>
    <message>
        <source>Nothing of it is kept.</source>
        <translation>Ничего не сохраняется.</translation>
    </message>
    <message>
        <source>Volume and devices</source>
        <translation>Громкость и устройства</translation>
    </message>
    <message>
        <source>In the sound settings of the desktop.</source>
        <translation>В настройках звука среды.</translation>
    </message>
    <message>
        <source>Sound Settings…</source>
        <translation>Настройки звука…</translation>
    </message>
    <message>
        <source>The microphone cannot be tried in this session.</source>
        <translation>В этом сеансе микрофон проверить нельзя.</translation>
    </message>
</context>
<context>
    <name>ModelStep</name>
    <message>
        <source>Speech model</source>
        <translation>Модель речи</translation>
    </message>
    <message>
        <source>It turns your voice into words, on this computer.</source>
        <translation>Она превращает голос в слова на этом компьютере.</translation>
    </message>
    <message>
        <source>Ready to use</source>
        <translation>Готова к работе</translation>
    </message>
    <message>
        <source>Better, on this computer</source>
        <translation>Лучше, на этом компьютере</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Загрузить</translation>
    </message>
    <message>
        <source>There is no speech model yet.</source>
        <translation>Модели речи пока нет.</translation>
    </message>
    <message>
        <source>You have the best one for this computer.</source>
        <translation>У вас лучшая модель для этого компьютера.</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Приостановить</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Продолжить</translation>
    </message>
</context>
<context>
    <name>ModelsPage</name>
    <message>
        <source>Download</source>
        <translation>Скачать</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Пауза</translation>
    </message>
    <message>
        <source>Verify</source>
        <translation>Проверить</translation>
    </message>
    <message>
        <source>Remove…</source>
        <translation>Удалить…</translation>
    </message>
    <message>
        <source>%1 — in use</source>
        <translation>%1 — используется</translation>
    </message>
    <message>
        <source>License: %1.</source>
        <translation>Лицензия: %1.</translation>
    </message>
    <message>
        <source>Download of %1</source>
        <translation>Загрузка %1</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Продолжить</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Повторить</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 из %2</translation>
    </message>
    <message>
        <source>%1 per second</source>
        <translation>%1 в секунду</translation>
    </message>
    <message numerus="yes">
        <source>%n second(s) left</source>
        <translation>
            <numerusform>осталась %n секунда</numerusform>
            <numerusform>осталось %n секунды</numerusform>
            <numerusform>осталось %n секунд</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minute(s) left</source>
        <translation>
            <numerusform>осталась %n минута</numerusform>
            <numerusform>осталось %n минуты</numerusform>
            <numerusform>осталось %n минут</numerusform>
        </translation>
    </message>
    <message>
        <source>Not installed · %1 to download</source>
        <translation>Не установлена · скачать %1</translation>
    </message>
    <message>
        <source>Not installed</source>
        <translation>Не установлена</translation>
    </message>
    <message>
        <source>Waiting…</source>
        <translation>Ожидание…</translation>
    </message>
    <message>
        <source>Paused · %1</source>
        <translation>Приостановлено · %1</translation>
    </message>
    <message>
        <source>Verifying…</source>
        <translation>Проверка…</translation>
    </message>
    <message>
        <source>Installed, not verified yet · %1 on disk</source>
        <translation>Установлена, ещё не проверена · %1 на диске</translation>
    </message>
    <message>
        <source>Installed and verified · %1 on disk</source>
        <translation>Установлена и проверена · %1 на диске</translation>
    </message>
    <message>
        <source>Damaged. Remove it and download it again.</source>
        <translation>Повреждена. Удалите её и скачайте снова.</translation>
    </message>
    <message>
        <source>Remove this model?</source>
        <translation>Удалить эту модель?</translation>
    </message>
    <message>
        <source>%1 is deleted from this computer. It can be downloaded again.</source>
        <translation>%1 удаляется с этого компьютера. Её можно скачать снова.</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Speech Models</source>
        <translation>Речевые модели</translation>
    </message>
    <message>
        <source>Speech recognition</source>
        <translation>Распознавание речи</translation>
    </message>
    <message>
        <source>Punctuation and capitals</source>
        <translation>Пунктуация и заглавные буквы</translation>
    </message>
    <message>
        <source>No model was downloaded yet.</source>
        <translation>Моделей ещё не скачано.</translation>
    </message>
    <message>
        <source>Downloaded models occupy %1.</source>
        <translation>Скачанные модели занимают %1.</translation>
    </message>
    <message>
        <source>Comes with Murmel</source>
        <translation>Входит в состав Murmel</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>Взять</translation>
    </message>
    <message>
        <source>Models run on this computer. Every file is checked before it is used. Q4 and Q8 in a name: the higher, the more exact, and the larger.</source>
        <translation>Модели работают на этом компьютере. Каждый файл проверяется перед использованием. Q4 и Q8 в названии: чем больше, тем точнее и тем больше места.</translation>
    </message>
    <message>
        <source>Of those that are here, the best one for your language is used.</source>
        <translation>Из имеющихся берётся лучшая для вашего языка.</translation>
    </message>
    <message>
        <source>Used when “Format with a local model” is on, under Text.</source>
        <translation>Работают, когда в разделе «Текст» включено «Форматировать локальной моделью».</translation>
    </message>
    <message>
        <source>Reads the whole model again and looks whether it is undamaged.</source>
        <translation>Заново читает всю модель и проверяет, не повреждена ли она.</translation>
    </message>
</context>
<context>
    <name>NoticeWindow</name>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Messages of Murmel</source>
        <translation>Сообщения Murmel</translation>
    </message>
</context>
<context>
    <name>PrivacyPage</name>
    <message>
        <source>History and Privacy</source>
        <translation>История и приватность</translation>
    </message>
    <message>
        <source>Your voice stays in memory and is never written to disk. Your words are kept only where you ask for it, encrypted, on this computer.</source>
        <translation>Ваш голос остаётся в памяти и никогда не записывается на диск. Слова хранятся только по вашему желанию, зашифрованными, на этом компьютере.</translation>
    </message>
    <message>
        <source>Delete All…</source>
        <translation>Удалить всё…</translation>
    </message>
    <message>
        <source>Delete the whole history?</source>
        <translation>Удалить всю историю?</translation>
    </message>
    <message>
        <source>Every entry, and the key that could read copies of it, is deleted. They cannot be recovered.</source>
        <translation>Все записи и ключ, которым можно прочитать их копии, удаляются. Их нельзя будет восстановить.</translation>
    </message>
    <message>
        <source>Delete All</source>
        <translation>Удалить всё</translation>
    </message>
    <message>
        <source>Unlock</source>
        <translation>Разблокировать</translation>
    </message>
    <message>
        <source>History</source>
        <translation>История</translation>
    </message>
    <message>
        <source>Keep a history</source>
        <translation>Вести историю</translation>
    </message>
    <message>
        <source>History is optional and off by default.</source>
        <translation>История необязательна и по умолчанию выключена.</translation>
    </message>
    <message>
        <source>Auto-delete history</source>
        <translation>Автоудаление истории</translation>
    </message>
    <message>
        <source>Entries that are older are deleted at once and cannot be recovered.</source>
        <translation>Более старые записи сразу удаляются, восстановить их нельзя.</translation>
    </message>
    <message>
        <source>Open History…</source>
        <translation>Открыть историю…</translation>
    </message>
    <message>
        <source>Stored entries</source>
        <translation>Сохранённые записи</translation>
    </message>
    <message>
        <source>What Murmel never does</source>
        <translation>Чего Murmel никогда не делает</translation>
    </message>
    <message>
        <source>No audio on disk</source>
        <translation>Никакого звука на диске</translation>
    </message>
    <message>
        <source>Recordings live in memory and are gone with the dictation.</source>
        <translation>Записи существуют только в памяти и исчезают вместе с диктовкой.</translation>
    </message>
    <message>
        <source>No network for your words</source>
        <translation>Никакой сети для ваших слов</translation>
    </message>
    <message>
        <source>No words in logs</source>
        <translation>Никаких слов в журналах</translation>
    </message>
    <message>
        <source>Logs hold times and counts, never what you said.</source>
        <translation>В журналах только время и числа, но не сказанное вами.</translation>
    </message>
    <message>
        <source>None.</source>
        <translation>Нет.</translation>
    </message>
    <message numerus="yes">
        <source>%n entry(ies).</source>
        <translation>
            <numerusform>%n запись.</numerusform>
            <numerusform>%n записи.</numerusform>
            <numerusform>%n записей.</numerusform>
        </translation>
    </message>
    <message>
        <source>They stay until you delete them, although the history is off.</source>
        <translation>Они останутся, пока вы их не удалите, хотя история выключена.</translation>
    </message>
    <message>
        <source>Recognition and correction run in processes that have no network. Murmel opens a connection only to download a model that you ask for, and to look for new versions where you have allowed it.</source>
        <translation>Распознавание и коррекция работают в процессах без сети. Murmel открывает соединение, только чтобы загрузить запрошенную вами модель и проверить новые версии, если вы это разрешили.</translation>
    </message>
</context>
<context>
    <name>RecorderSheet</name>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>%1 of %2 times</source>
        <translation>%1 из %2 раз</translation>
    </message>
    <message>
        <source>This desktop hears no modifier key alone: hold modifiers together with a key.</source>
        <translation>Этот рабочий стол не слышит один модификатор: удерживайте модификаторы вместе с клавишей.</translation>
    </message>
    <message>
        <source>Most keyboards keep Fn to themselves: if nothing shows when you press it, it is not heard here.</source>
        <translation>Большинство клавиатур не сообщают о Fn: если при нажатии ничего не видно, здесь её не слышно.</translation>
    </message>
</context>
<context>
    <name>RecordingPill</name>
    <message>
        <source>The microphone has stopped</source>
        <translation>Микрофон перестал передавать звук</translation>
    </message>
    <message>
        <source>The microphone is silent</source>
        <translation>Микрофон молчит</translation>
    </message>
    <message>
        <source>Sound from the microphone is being lost</source>
        <translation>Часть звука с микрофона теряется</translation>
    </message>
    <message>
        <source>The microphone is too loud</source>
        <translation>Микрофон слишком громкий</translation>
    </message>
    <message>
        <source>No microphone: listening to the speakers</source>
        <translation>Нет микрофона: слушаются динамики</translation>
    </message>
    <message>
        <source>The microphone is very quiet</source>
        <translation>Микрофон очень тихий</translation>
    </message>
    <message>
        <source>Stop and insert</source>
        <translation>Остановить и вставить</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Отменить</translation>
    </message>
    <message>
        <source>Dismiss</source>
        <translation>Скрыть</translation>
    </message>
    <message>
        <source>Time of the recording</source>
        <translation>Время записи</translation>
    </message>
    <message>
        <source>Start Dictation</source>
        <translation>Начать диктовку</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Предупреждение</translation>
    </message>
    <message>
        <source>Speak, then let go</source>
        <translation>Говорите, затем отпустите</translation>
    </message>
    <message>
        <source>Speak, then press again</source>
        <translation>Говорите, затем нажмите снова</translation>
    </message>
    <message>
        <source>Speak, then press again or click here</source>
        <translation>Говорите, затем нажмите снова или щёлкните здесь</translation>
    </message>
</context>
<context>
    <name>SettingsWindow</name>
    <message>
        <source>Murmel Settings</source>
        <translation>Настройки Murmel</translation>
    </message>
    <message>
        <source>Reset This Page…</source>
        <translation>Сбросить страницу…</translation>
    </message>
    <message>
        <source>No setting has these words.</source>
        <translation>Нет настроек с такими словами.</translation>
    </message>
    <message>
        <source>Search settings</source>
        <translation>Поиск настроек</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Страницы</translation>
    </message>
    <message>
        <source>Reset the page “%1”?</source>
        <translation>Сбросить страницу «%1»?</translation>
    </message>
    <message>
        <source>Its settings become what they are without your changes. Vocabulary and history stay.</source>
        <translation>Её настройки станут такими, как без ваших изменений. Словарь и история останутся.</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Сбросить</translation>
    </message>
</context>
<context>
    <name>ShortcutPage</name>
    <message>
        <source>Shortcut</source>
        <translation>Клавиши</translation>
    </message>
    <message>
        <source>The keys that start and stop a dictation, whatever application is in front.</source>
        <translation>Клавиши, которые начинают и заканчивают диктовку, какая бы программа ни была впереди.</translation>
    </message>
    <message>
        <source>Dictation shortcut</source>
        <translation>Сочетание для диктовки</translation>
    </message>
    <message>
        <source>keys hotkey hold tap</source>
        <translation>клавиши горячие удерживать нажать</translation>
    </message>
    <message>
        <source>Keys cannot be recorded in this session.</source>
        <translation>В этом сеансе записать клавиши нельзя.</translation>
    </message>
    <message>
        <source>Setup and permissions</source>
        <translation>Настройка и разрешения</translation>
    </message>
    <message>
        <source>Check…</source>
        <translation>Проверить…</translation>
    </message>
    <message>
        <source>Further shortcuts</source>
        <translation>Другие сочетания клавиш</translation>
    </message>
    <message>
        <source>Discard the recording</source>
        <translation>Отменить запись</translation>
    </message>
    <message>
        <source>Esc does that too, while Murmel listens.</source>
        <translation>Esc тоже делает это, пока Murmel слушает.</translation>
    </message>
    <message>
        <source>Paste the last dictation again</source>
        <translation>Вставить последнюю диктовку ещё раз</translation>
    </message>
    <message>
        <source>For two minutes after it.</source>
        <translation>В течение двух минут после неё.</translation>
    </message>
    <message>
        <source>Remove this shortcut</source>
        <translation>Убрать это сочетание</translation>
    </message>
    <message>
        <source>This desktop watches no further shortcut for Murmel.</source>
        <translation>Эта среда не следит для Murmel за другими сочетаниями.</translation>
    </message>
    <message>
        <source>Record…</source>
        <translation>Записать…</translation>
    </message>
    <message>
        <source>Record other keys</source>
        <translation>Записать другие клавиши</translation>
    </message>
    <message>
        <source>Keys of your own</source>
        <translation>Свои клавиши</translation>
    </message>
    <message>
        <source>Press the keys that you want to use instead of the shortcut above.</source>
        <translation>Нажмите клавиши, которые хотите использовать вместо сочетания выше.</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Нет</translation>
    </message>
    <message>
        <source>Change…</source>
        <translation>Изменить…</translation>
    </message>
</context>
<context>
    <name>ShortcutStep</name>
    <message>
        <source>Shortcut</source>
        <translation>Сочетание клавиш</translation>
    </message>
    <message>
        <source>The keys that start and stop a dictation, whatever application is in front.</source>
        <translation>Клавиши, которые начинают и останавливают диктовку в любом приложении.</translation>
    </message>
    <message>
        <source>Keys cannot be recorded in this session.</source>
        <translation>В этом сеансе клавиши записать нельзя.</translation>
    </message>
    <message>
        <source>Suggestions</source>
        <translation>Предложения</translation>
    </message>
    <message>
        <source>Use</source>
        <translation>Выбрать</translation>
    </message>
    <message>
        <source>Use %1</source>
        <translation>Выбрать %1</translation>
    </message>
    <message>
        <source>Hold both while you speak. They write nothing and are on every keyboard.</source>
        <translation>Удерживайте обе, пока говорите. Они ничего не пишут и есть на любой клавиатуре.</translation>
    </message>
    <message>
        <source>Twice to start, twice to stop: nothing has to be held down.</source>
        <translation>Дважды, чтобы начать, дважды, чтобы остановить: ничего не нужно удерживать.</translation>
    </message>
    <message>
        <source>In Use</source>
        <translation>Используется</translation>
    </message>
    <message>
        <source>Record Other Keys…</source>
        <translation>Записать другие клавиши…</translation>
    </message>
    <message>
        <source>Hold the keys while you speak. This desktop hears them, but no modifier key alone.</source>
        <translation>Удерживайте клавиши, пока говорите. Их этот рабочий стол слышит, а один модификатор — нет.</translation>
    </message>
    <message>
        <source>Nothing Happened</source>
        <translation>Ничего не произошло</translation>
    </message>
</context>
<context>
    <name>TextPage</name>
    <message>
        <source>Text</source>
        <translation>Текст</translation>
    </message>
    <message>
        <source>What becomes of the recognized words before they are inserted.</source>
        <translation>Что происходит с распознанными словами перед вставкой.</translation>
    </message>
    <message>
        <source>Clean-up</source>
        <translation>Очистка</translation>
    </message>
    <message>
        <source>Remove filler words</source>
        <translation>Удалять слова-паразиты</translation>
    </message>
    <message>
        <source>Optional cleanup for common Russian and English fillers. Unlike Conservative punctuation, this intentionally removes spoken words.</source>
        <translation>Необязательная очистка от распространённых русских и английских слов-паразитов. В отличие от консервативной пунктуации, она намеренно удаляет сказанные слова.</translation>
    </message>
    <message>
        <source>um uh you know</source>
        <translation>эм ну короче</translation>
    </message>
    <message>
        <source>Punctuation and capitals</source>
        <translation>Пунктуация и заглавные буквы</translation>
    </message>
    <message>
        <source>Format with a local model</source>
        <translation>Форматировать локальной моделью</translation>
    </message>
    <message>
        <source>Conservative: a language model on this computer sets punctuation and capitals, and can neither change nor remove a word. From the next dictation.</source>
        <translation>Консервативно: языковая модель на этом компьютере расставляет знаки и заглавные буквы и не может изменить или удалить ни слова. Со следующей диктовки.</translation>
    </message>
    <message>
        <source>Automatic correction routing</source>
        <translation>Автоматический выбор коррекции</translation>
    </message>
    <message>
        <source>Russian goes to a corrector of its own where it is installed, everything else to the model below.</source>
        <translation>Русский текст идёт к отдельному корректору, если он установлен, остальное — к модели ниже.</translation>
    </message>
    <message>
        <source>By language</source>
        <translation>По языку</translation>
    </message>
    <message>
        <source>Selected model only</source>
        <translation>Только выбранная модель</translation>
    </message>
    <message>
        <source>Language model</source>
        <translation>Языковая модель</translation>
    </message>
    <message>
        <source>Recommendation</source>
        <translation>Рекомендация</translation>
    </message>
    <message>
        <source>Not installed. Get it under Speech Models.</source>
        <translation>Не установлена. Скачайте в разделе «Речевые модели».</translation>
    </message>
    <message>
        <source>Installed.</source>
        <translation>Установлена.</translation>
    </message>
    <message>
        <source>Needs a language model; get one under Speech Models.</source>
        <translation>Нужна языковая модель; скачайте её в разделе «Речевые модели».</translation>
    </message>
    <message>
        <source>Personal vocabulary</source>
        <translation>Личный словарь</translation>
    </message>
    <message>
        <source>Replacements</source>
        <translation>Замены</translation>
    </message>
    <message>
        <source>One replacement per line, for example: postgresql = PostgreSQL</source>
        <translation>Одна замена в строке, например: postgresql = PostgreSQL</translation>
    </message>
    <message>
        <source>vocabulary words names spelling</source>
        <translation>словарь слова имена написание</translation>
    </message>
    <message>
        <source>Spoken commands</source>
        <translation>Голосовые команды</translation>
    </message>
    <message>
        <source>“Comma”, “period”, “new line”, “open quote” and the like write what they name; say “literal comma” for the word. In English, German, French, Spanish and Russian.</source>
        <translation>«Запятая», «точка», «новая строка», «открыть кавычки» и подобные пишут то, что называют; чтобы получить само слово, скажите «буквально запятая». По-русски, по-английски, по-немецки, по-французски и по-испански.</translation>
    </message>
    <message>
        <source>punctuation voice dictation commands</source>
        <translation>пунктуация знаки голос диктовка команды</translation>
    </message>
    <message>
        <source>Space between dictations</source>
        <translation>Пробел между диктовками</translation>
    </message>
    <message>
        <source>When you dictate twice in a row into the same field and press nothing in between, a space is pasted before the second text.</source>
        <translation>Если вы диктуете два раза подряд в одно поле и ничего не нажимаете между ними, перед вторым текстом вставляется пробел.</translation>
    </message>
    <message>
        <source>This desktop does not let Murmel hear whether a key is pressed in between.</source>
        <translation>Этот рабочий стол не даёт Murmel слышать, нажимают ли клавиши между диктовками.</translation>
    </message>
</context>
<context>
    <name>Titles</name>
    <message>
        <source>English</source>
        <translation>Английский</translation>
    </message>
    <message>
        <source>Spanish</source>
        <translation>Испанский</translation>
    </message>
    <message>
        <source>French</source>
        <translation>Французский</translation>
    </message>
    <message>
        <source>German</source>
        <translation>Немецкий</translation>
    </message>
    <message>
        <source>Italian</source>
        <translation>Итальянский</translation>
    </message>
    <message>
        <source>Portuguese</source>
        <translation>Португальский</translation>
    </message>
    <message>
        <source>Romanian</source>
        <translation>Румынский</translation>
    </message>
    <message>
        <source>Dutch</source>
        <translation>Нидерландский</translation>
    </message>
    <message>
        <source>Danish</source>
        <translation>Датский</translation>
    </message>
    <message>
        <source>Swedish</source>
        <translation>Шведский</translation>
    </message>
    <message>
        <source>Finnish</source>
        <translation>Финский</translation>
    </message>
    <message>
        <source>Hungarian</source>
        <translation>Венгерский</translation>
    </message>
    <message>
        <source>Estonian</source>
        <translation>Эстонский</translation>
    </message>
    <message>
        <source>Latvian</source>
        <translation>Латышский</translation>
    </message>
    <message>
        <source>Lithuanian</source>
        <translation>Литовский</translation>
    </message>
    <message>
        <source>Maltese</source>
        <translation>Мальтийский</translation>
    </message>
    <message>
        <source>Polish</source>
        <translation>Польский</translation>
    </message>
    <message>
        <source>Czech</source>
        <translation>Чешский</translation>
    </message>
    <message>
        <source>Slovak</source>
        <translation>Словацкий</translation>
    </message>
    <message>
        <source>Slovenian</source>
        <translation>Словенский</translation>
    </message>
    <message>
        <source>Croatian</source>
        <translation>Хорватский</translation>
    </message>
    <message>
        <source>Bosnian</source>
        <translation>Боснийский</translation>
    </message>
    <message>
        <source>Russian</source>
        <translation>Русский</translation>
    </message>
    <message>
        <source>Ukrainian</source>
        <translation>Украинский</translation>
    </message>
    <message>
        <source>Belarusian</source>
        <translation>Белорусский</translation>
    </message>
    <message>
        <source>Bulgarian</source>
        <translation>Болгарский</translation>
    </message>
    <message>
        <source>Serbian</source>
        <translation>Сербский</translation>
    </message>
    <message>
        <source>Greek</source>
        <translation>Греческий</translation>
    </message>
    <message>
        <source>Never delete automatically</source>
        <translation>Никогда не удалять автоматически</translation>
    </message>
    <message>
        <source>After 5 minutes</source>
        <translation>Через 5 минут</translation>
    </message>
    <message>
        <source>After 1 day</source>
        <translation>Через 1 день</translation>
    </message>
    <message>
        <source>After 1 week</source>
        <translation>Через 1 неделю</translation>
    </message>
    <message>
        <source>After 1 month</source>
        <translation>Через 1 месяц</translation>
    </message>
    <message>
        <source>After 3 months</source>
        <translation>Через 3 месяца</translation>
    </message>
    <message>
        <source>Top edge</source>
        <translation>Верхний край</translation>
    </message>
    <message>
        <source>Right edge</source>
        <translation>Правый край</translation>
    </message>
    <message>
        <source>Bottom edge</source>
        <translation>Нижний край</translation>
    </message>
    <message>
        <source>Left edge</source>
        <translation>Левый край</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Автоматически</translation>
    </message>
</context>
<context>
    <name>TrayMenu</name>
    <message>
        <source>Start Dictation</source>
        <translation>Начать диктовку</translation>
    </message>
    <message>
        <source>Discard Dictation</source>
        <translation>Отменить диктовку</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Попробовать ещё раз</translation>
    </message>
    <message>
        <source>Copy Last Dictation</source>
        <translation>Копировать последнюю диктовку</translation>
    </message>
    <message>
        <source>Paste Last Dictation Again</source>
        <translation>Вставить последнюю диктовку ещё раз</translation>
    </message>
    <message>
        <source>Bring Back the Clipboard</source>
        <translation>Вернуть буфер обмена</translation>
    </message>
    <message>
        <source>Copy from History</source>
        <translation>Копировать из истории</translation>
    </message>
    <message>
        <source>Microphone</source>
        <translation>Микрофон</translation>
    </message>
    <message>
        <source>Looking…</source>
        <translation>Поиск…</translation>
    </message>
    <message>
        <source>Pause Murmel</source>
        <translation>Приостановить Murmel</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Настройки…</translation>
    </message>
    <message>
        <source>History…</source>
        <translation>История…</translation>
    </message>
    <message>
        <source>Setup and Permissions…</source>
        <translation>Установка и разрешения…</translation>
    </message>
    <message>
        <source>Credits…</source>
        <translation>Благодарности…</translation>
    </message>
    <message>
        <source>About Murmel</source>
        <translation>О программе Murmel</translation>
    </message>
    <message>
        <source>Quit Murmel</source>
        <translation>Завершить Murmel</translation>
    </message>
    <message>
        <source>Paused: the shortcut is not heard</source>
        <translation>Приостановлено: сочетание клавиш не слушается</translation>
    </message>
    <message>
        <source>Stop Dictation</source>
        <translation>Остановить диктовку</translation>
    </message>
    <message>
        <source>Shortcut: %1</source>
        <translation>Сочетание клавиш: %1</translation>
    </message>
    <message>
        <source>Language: %1</source>
        <translation>Язык: %1</translation>
    </message>
    <message>
        <source>Speech Model: %1</source>
        <translation>Модель речи: %1</translation>
    </message>
    <message>
        <source>Nothing yet</source>
        <translation>Пока ничего</translation>
    </message>
    <message>
        <source>There is no microphone.</source>
        <translation>Микрофона нет.</translation>
    </message>
</context>
<context>
    <name>TrayTexts</name>
    <message>
        <source>%1 · downloading, %2 %</source>
        <translation>%1 · загрузка, %2 %</translation>
    </message>
    <message>
        <source>none yet</source>
        <translation>пока нет</translation>
    </message>
</context>
<context>
    <name>TryStep</name>
    <message>
        <source>Try it here</source>
        <translation>Попробуйте здесь</translation>
    </message>
    <message>
        <source>Your words appear here</source>
        <translation>Здесь появятся ваши слова</translation>
    </message>
    <message>
        <source>Hold %1, say a sentence, let go.</source>
        <translation>Удерживайте %1, скажите фразу, отпустите.</translation>
    </message>
    <message>
        <source>A whole dictation, just as in any application. Once words have arrived here, you can finish.</source>
        <translation>Полная диктовка, точно так же, как в любом приложении. Когда слова появятся здесь, можно завершить.</translation>
    </message>
    <message>
        <source>Press %1, say a sentence, press it again.</source>
        <translation>Нажмите %1, скажите фразу, нажмите снова.</translation>
    </message>
</context>
<context>
    <name>UpdatePanel</name>
    <message>
        <source>Version %1 is available, %2.</source>
        <translation>Доступна версия %1, %2.</translation>
    </message>
    <message>
        <source>Looking for a new version…</source>
        <translation>Поиск новой версии…</translation>
    </message>
    <message>
        <source>This is the newest version.</source>
        <translation>Это самая новая версия.</translation>
    </message>
    <message>
        <source>Downloading, %1 of %2</source>
        <translation>Загружается, %1 из %2</translation>
    </message>
    <message>
        <source>Downloading…</source>
        <translation>Загружается…</translation>
    </message>
    <message>
        <source>Downloaded. It is installed when nobody dictates.</source>
        <translation>Загружено. Установится, когда никто не диктует.</translation>
    </message>
    <message>
        <source>Installing…</source>
        <translation>Устанавливается…</translation>
    </message>
    <message>
        <source>Installed. Murmel starts again.</source>
        <translation>Установлено. Murmel перезапускается.</translation>
    </message>
    <message>
        <source>Check Now</source>
        <translation>Проверить</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Установить</translation>
    </message>
    <message>
        <source>Install When Idle</source>
        <translation>Установить в простое</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Download of the update</source>
        <translation>Загрузка обновления</translation>
    </message>
    <message>
        <source>It comes with the packages of your system: %1</source>
        <translation>Она приходит с пакетами вашей системы: %1</translation>
    </message>
    <message>
        <source>Last check: %1</source>
        <translation>Последняя проверка: %1</translation>
    </message>
    <message>
        <source>Never checked</source>
        <translation>Ещё не проверялось</translation>
    </message>
</context>
<context>
    <name>VocabularyEditor</name>
    <message>
        <source>Unlock</source>
        <translation>Разблокировать</translation>
    </message>
    <message>
        <source>Heard</source>
        <translation>Слышится</translation>
    </message>
    <message>
        <source>Written</source>
        <translation>Пишется</translation>
    </message>
    <message>
        <source>Replacements</source>
        <translation>Замены</translation>
    </message>
    <message>
        <source>Replacements as text</source>
        <translation>Замены как текст</translation>
    </message>
    <message>
        <source>Type a sentence to try the vocabulary on</source>
        <translation>Введите фразу, чтобы проверить словарь</translation>
    </message>
    <message>
        <source>Try it</source>
        <translation>Проверить</translation>
    </message>
    <message>
        <source>Import…</source>
        <translation>Импорт…</translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation>Выше</translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation>Ниже</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Удалить</translation>
    </message>
    <message numerus="yes">
        <source>%n replacement(s)</source>
        <translation>
            <numerusform>%n замена</numerusform>
            <numerusform>%n замены</numerusform>
            <numerusform>%n замен</numerusform>
        </translation>
    </message>
    <message>
        <source>line %1 has no “=” and does nothing</source>
        <translation>в строке %1 нет «=», она ничего не делает</translation>
    </message>
    <message>
        <source>line %1 has nothing before the “=”</source>
        <translation>в строке %1 ничего нет перед «=»</translation>
    </message>
    <message>
        <source>kept encrypted, with a key in your key ring</source>
        <translation>хранится зашифрованно, ключ — в вашей связке ключей</translation>
    </message>
    <message>
        <source>Import Replacements</source>
        <translation>Импорт замен</translation>
    </message>
    <message>
        <source>Text files (*.txt);;All files (*)</source>
        <translation>Текстовые файлы (*.txt);;Все файлы (*)</translation>
    </message>
</context>
<context>
    <name>WelcomeStep</name>
    <message>
        <source>Dictate into any application</source>
        <translation>Диктуйте в любое приложение</translation>
    </message>
    <message>
        <source>What Murmel does</source>
        <translation>Что делает Murmel</translation>
    </message>
    <message>
        <source>Recognizes speech on this computer</source>
        <translation>Распознаёт речь на этом компьютере</translation>
    </message>
    <message>
        <source>Inserts the words for you</source>
        <translation>Вставляет слова за вас</translation>
    </message>
    <message>
        <source>What you had copied before is put back. When an application takes no text, your words stay on the clipboard.</source>
        <translation>То, что было скопировано раньше, возвращается. Если приложение не принимает текст, слова остаются в буфере обмена.</translation>
    </message>
    <message>
        <source>What it never does</source>
        <translation>Чего он никогда не делает</translation>
    </message>
    <message>
        <source>Your voice is never written to disk or sent anywhere</source>
        <translation>Ваш голос никогда не записывается на диск и никуда не отправляется</translation>
    </message>
    <message>
        <source>Sound is kept in memory until it is recognized.</source>
        <translation>Звук остаётся в памяти, пока не будет распознан.</translation>
    </message>
    <message>
        <source>Your words are never written to a log</source>
        <translation>Ваши слова никогда не попадают в журнал</translation>
    </message>
    <message>
        <source>There is a history only if you want one, and it is encrypted.</source>
        <translation>История ведётся, только если вы этого хотите, и она зашифрована.</translation>
    </message>
    <message>
        <source>Press a shortcut and speak: your words appear where you write.</source>
        <translation>Нажмите сочетание клавиш и говорите: слова появятся там, где вы пишете.</translation>
    </message>
    <message>
        <source>Listens only while you dictate</source>
        <translation>Слушает, только пока вы диктуете</translation>
    </message>
    <message>
        <source>From the shortcut, or a click on its button, until you let go or press again.</source>
        <translation>От нажатия сочетания или щелчка по кнопке, пока вы не отпустите или не нажмёте снова.</translation>
    </message>
    <message>
        <source>No network is needed for it.</source>
        <translation>Сеть для этого не нужна.</translation>
    </message>
</context>
</TS>
