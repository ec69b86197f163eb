<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="he_IL">
<context>
    <name>TVRNavigationController</name>
    <message>
        <source>Back</source>
        <extracomment>Goes back to the previous screen.</extracomment>
        <translation>חזרה</translation>
    </message>
</context>
<context>
    <name>TVRPrivacyPolicyViewController</name>
    <message>
        <source>Privacy Policy</source>
        <extracomment>The title of the screen that shows the application&apos;s privacy policy.</extracomment>
        <translation>מדיניות הפרטיות</translation>
    </message>
</context>
<context>
    <name>TVRReadOnlyDocumentViewController</name>
    <message>
        <source>Close</source>
        <extracomment>Closes a terms of service or privacy policy screen that was opened over the application.</extracomment>
        <translation>סגירה</translation>
    </message>
</context>
<context>
    <name>TVRTermsOfServiceViewController</name>
    <message>
        <source>Terms of Service</source>
        <extracomment>The title of the screen that shows the application&apos;s terms of service.</extracomment>
        <translation>תנאי השימוש</translation>
    </message>
</context>
<context>
    <name>TVRTermsViewController</name>
    <message>
        <source>Terms of Service</source>
        <extracomment>The title of the screen on which the user accepts or refuses the terms of service.</extracomment>
        <translation>תנאי השימוש</translation>
    </message>
    <message>
        <source>Disagree</source>
        <extracomment>The button that refuses the terms of service shown above it.</extracomment>
        <translation>אני לא מסכים/ה</translation>
    </message>
    <message>
        <source>Agree</source>
        <extracomment>The button that accepts the terms of service shown above it.</extracomment>
        <translation>אני מסכים/ה</translation>
    </message>
</context>
</TS>
