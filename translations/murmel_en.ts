<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>HistoryModel</name>
    <message numerus="yes">
        <source>%n word(s)</source>
        <translation>
            <numerusform>%n word</numerusform>
            <numerusform>%n words</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n part(s) not recognized</source>
        <translation>
            <numerusform>%n part not recognized</numerusform>
            <numerusform>%n parts not recognized</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>HistoryWindow</name>
    <message numerus="yes">
        <source>%n dictation(s)</source>
        <translation>
            <numerusform>%n dictation</numerusform>
            <numerusform>%n dictations</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n word(s)</source>
        <translation>
            <numerusform>%n word</numerusform>
            <numerusform>%n words</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ModelsPage</name>
    <message numerus="yes">
        <source>%n second(s) left</source>
        <translation>
            <numerusform>%n second left</numerusform>
            <numerusform>%n seconds left</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minute(s) left</source>
        <translation>
            <numerusform>%n minute left</numerusform>
            <numerusform>%n minutes left</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PrivacyPage</name>
    <message numerus="yes">
        <source>%n entry(ies).</source>
        <translation>
            <numerusform>%n entry.</numerusform>
            <numerusform>%n entries.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>VocabularyEditor</name>
    <message numerus="yes">
        <source>%n replacement(s)</source>
        <translation>
            <numerusform>%n replacement</numerusform>
            <numerusform>%n replacements</numerusform>
        </translation>
    </message>
</context>
</TS>
