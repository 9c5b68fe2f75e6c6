<?xml version="1.0" encoding="UTF-8"?>
<!-- Shows an exported thread: replies below the message that they answer. XSLT 1.0. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="html" encoding="UTF-8" indent="no" doctype-system="about:legacy-compat"/>

  <!-- A reply has a higher number than what it answers; a number that says otherwise starts a thread. -->
  <xsl:key name="by-number" match="MESSAGE" use="Код"/>
  <xsl:key name="replies" match="MESSAGE[number(Вответ) &lt; number(Код)]" use="Вответ"/>

  <xsl:variable name="first" select="/MESSAGES/MESSAGE[Код][1]"/>

  <xsl:template match="/">
    <html lang="ru">
      <head>
        <meta name="viewport" content="width=device-width, initial-scale=1"/>
        <title><xsl:call-template name="subject"><xsl:with-param name="of" select="$first"/></xsl:call-template></title>
        <style>
          :root { color-scheme: light dark; --text: #1f2328; --quiet: #59636e; --line: #d1d9e0; --page: #ffffff;
                  --card: #f6f8fa; --link: #0b57d0; }
          @media (prefers-color-scheme: dark) {
            :root { --text: #e6e8eb; --quiet: #9aa4ae; --line: #3a4149; --page: #15181c; --card: #1e2227;
                    --link: #8ab4f8; }
          }
          body { margin: 0 auto; padding: 1.5rem; max-width: 60rem; background: var(--page); color: var(--text);
                 font: 1rem/1.5 system-ui, "Segoe UI", "Noto Sans", "DejaVu Sans", sans-serif; }
          h1 { margin: 0; font-size: 1.5rem; line-height: 1.3; overflow-wrap: anywhere; }
          .count { margin: .25rem 0 1.25rem; color: var(--quiet); }
          article { margin: .75rem 0 0; scroll-margin-top: 1rem; }
          article article { margin-left: .6rem; padding-left: .9rem; border-left: 2px solid var(--line); }
          /* Deep threads go on straight down. */
          article article article article article article article article article article article
            { margin-left: 0; padding-left: 0; border-left: 0; }
          .card { padding: .7rem 1rem; border: 1px solid var(--line); border-radius: .5rem; background: var(--card); }
          .card:target { border-color: var(--link); }
          .head { display: flex; flex-wrap: wrap; gap: 0 1rem; color: var(--quiet); font-size: .9rem; }
          .author { color: var(--text); font-weight: 600; overflow-wrap: anywhere; }
          .number { margin-left: auto; }
          .subject { margin-top: .2rem; font-weight: 600; overflow-wrap: anywhere; }
          .text { margin-top: .5rem; overflow-wrap: anywhere; }
          .plain { white-space: pre-line; }
          .gone { color: var(--quiet); font-style: italic; }
          a { color: var(--link); }
          @media print { body { padding: 0; max-width: none; } .card { background: none; break-inside: avoid; } }
        </style>
      </head>
      <body>
        <h1><xsl:call-template name="subject"><xsl:with-param name="of" select="$first"/></xsl:call-template></h1>
        <p class="count">Сообщений в цепочке: <xsl:value-of select="count(/MESSAGES/MESSAGE)"/></p>
        <main>
          <xsl:apply-templates select="/MESSAGES/MESSAGE[not(key('by-number', Вответ)) or not(number(Вответ) &lt; number(Код))]"/>
        </main>
      </body>
    </html>
  </xsl:template>

  <!-- Its row was gone when the thread was written. -->
  <xsl:template match="MESSAGE[not(Код)]">
    <article><div class="card gone">Этого сообщения нет в базе.</div></article>
  </xsl:template>

  <xsl:template match="MESSAGE">
    <article>
      <div class="card" id="m{Код}">
        <div class="head">
          <span class="author">
            <xsl:choose>
              <xsl:when test="normalize-space(Автор)"><xsl:value-of select="normalize-space(Автор)"/></xsl:when>
              <xsl:otherwise>Автор не указан</xsl:otherwise>
            </xsl:choose>
          </span>
          <xsl:if test="normalize-space(АвторMail)">
            <a href="mailto:{normalize-space(АвторMail)}"><xsl:value-of select="normalize-space(АвторMail)"/></a>
          </xsl:if>
          <span>
            <xsl:choose>
              <xsl:when test="string-length(Дата) = 10">
                <xsl:value-of select="concat(substring(Дата, 9), '.', substring(Дата, 6, 2), '.', substring(Дата, 1, 4))"/>
              </xsl:when>
              <xsl:otherwise>без даты</xsl:otherwise>
            </xsl:choose>
          </span>
          <span class="number">№ <xsl:value-of select="Код"/>
            <xsl:if test="number(Вответ) &gt; 0">, ответ на
              <xsl:choose>
                <xsl:when test="key('by-number', Вответ)"><a href="#m{Вответ}"><xsl:value-of select="Вответ"/></a></xsl:when>
                <xsl:otherwise><xsl:value-of select="Вответ"/></xsl:otherwise>
              </xsl:choose>
            </xsl:if>
          </span>
        </div>
        <div class="subject"><xsl:call-template name="subject"><xsl:with-param name="of" select="."/></xsl:call-template></div>
        <xsl:variable name="marked" select="translate(Текст, 'BRP', 'brp')"/>
        <xsl:choose>
          <xsl:when test="contains($marked, '&lt;br&gt;') or contains($marked, '&lt;p&gt;')">
            <div class="text"><xsl:call-template name="text"><xsl:with-param name="text" select="string(Текст)"/></xsl:call-template></div>
          </xsl:when>
          <xsl:otherwise><div class="text plain"><xsl:value-of select="Текст"/></div></xsl:otherwise>
        </xsl:choose>
      </div>
      <xsl:apply-templates select="key('replies', Код)"/>
    </article>
  </xsl:template>

  <xsl:template name="subject">
    <xsl:param name="of"/>
    <xsl:choose>
      <xsl:when test="normalize-space($of/Тема)"><xsl:value-of select="normalize-space($of/Тема)"/></xsl:when>
      <xsl:otherwise>Без темы</xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- Most stored texts mark their line breaks by <br> and <p>; the line ends in them only cut long lines then.
       One mark after the other is looked for; the text is halved, for processors limit how deep templates call. -->
  <xsl:template name="text">
    <xsl:param name="text"/>
    <xsl:param name="marks" select="'&lt;br&gt; &lt;BR&gt; &lt;p&gt; &lt;P&gt; '"/>
    <xsl:variable name="mark" select="substring-before($marks, ' ')"/>
    <xsl:variable name="half" select="floor(string-length($text) div 2)"/>
    <xsl:variable name="behind" select="substring($text, $half + 1)"/>
    <xsl:choose>
      <xsl:when test="$mark = ''"><xsl:value-of select="$text"/></xsl:when>
      <xsl:when test="not(contains($text, $mark))">
        <xsl:call-template name="text">
          <xsl:with-param name="text" select="$text"/>
          <xsl:with-param name="marks" select="substring-after($marks, ' ')"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:when test="contains($behind, $mark)">
        <xsl:call-template name="text">
          <xsl:with-param name="text" select="concat(substring($text, 1, $half), substring-before($behind, $mark))"/>
          <xsl:with-param name="marks" select="$marks"/>
        </xsl:call-template>
        <xsl:call-template name="break"><xsl:with-param name="mark" select="$mark"/></xsl:call-template>
        <xsl:call-template name="text">
          <xsl:with-param name="text" select="substring-after($behind, $mark)"/>
          <xsl:with-param name="marks" select="$marks"/>
        </xsl:call-template>
      </xsl:when>
      <!-- All marks begin in the first half; the last may reach into the second. -->
      <xsl:when test="$half &gt; string-length($mark)">
        <xsl:call-template name="text">
          <xsl:with-param name="text" select="substring($text, 1, $half + string-length($mark) - 1)"/>
          <xsl:with-param name="marks" select="$marks"/>
        </xsl:call-template>
        <xsl:call-template name="text">
          <xsl:with-param name="text" select="substring($text, $half + string-length($mark))"/>
          <xsl:with-param name="marks" select="substring-after($marks, ' ')"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise>
        <xsl:call-template name="text">
          <xsl:with-param name="text" select="substring-before($text, $mark)"/>
          <xsl:with-param name="marks" select="substring-after($marks, ' ')"/>
        </xsl:call-template>
        <xsl:call-template name="break"><xsl:with-param name="mark" select="$mark"/></xsl:call-template>
        <xsl:call-template name="text">
          <xsl:with-param name="text" select="substring-after($text, $mark)"/>
          <xsl:with-param name="marks" select="$marks"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="break">
    <xsl:param name="mark"/>
    <br/>
    <xsl:if test="contains('&lt;p&gt; &lt;P&gt;', $mark)"><br/></xsl:if>
  </xsl:template>
</xsl:stylesheet>
