<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>TVRNavigationController</name>
    <message>
        <source>Back</source>
        <extracomment>Goes back to the previous screen.</extracomment>
        <translation>返回</translation>
    </message>
</context>
<context>
    <name>TVRPrivacyPolicyViewController</name>
    <message>
        <source>Privacy Policy</source>
        <extracomment>The title of the screen that shows the application&apos;s privacy policy.</extracomment>
        <translation>隐私政策</translation>
    </message>
</context>
<context>
    <name>TVRReadOnlyDocumentViewController</name>
    <message>
        <source>Close</source>
        <extracomment>Closes a terms of service or privacy policy screen that was opened over the application.</extracomment>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>TVRTermsOfServiceViewController</name>
    <message>
        <source>Terms of Service</source>
        <extracomment>The title of the screen that shows the application&apos;s terms of service.</extracomment>
        <translation>服务条款</translation>
    </message>
</context>
<context>
    <name>TVRTermsViewController</name>
    <message>
        <source>Terms of Service</source>
        <extracomment>The title of the screen on which the user accepts or refuses the terms of service.</extracomment>
        <translation>服务条款</translation>
    </message>
    <message>
        <source>Disagree</source>
        <extracomment>The button that refuses the terms of service shown above it.</extracomment>
        <translation>不同意</translation>
    </message>
    <message>
        <source>Agree</source>
        <extracomment>The button that accepts the terms of service shown above it.</extracomment>
        <translation>同意</translation>
    </message>
</context>
</TS>
