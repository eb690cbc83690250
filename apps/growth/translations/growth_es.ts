<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es" sourcelanguage="en">
<context>
    <name>VelmoraDocument</name>
    <message>
        <source>Patient</source>
        <translation>Paciente</translation>
    </message>
    <message>
        <source>&amp;Identifier</source>
        <translation>&amp;Identificador</translation>
    </message>
    <message>
        <source>Identifier</source>
        <translation>Identificador</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>&amp;Born</source>
        <translation>&amp;Nacimiento</translation>
    </message>
    <message>
        <source>Birth date</source>
        <translation>Fecha de nacimiento</translation>
    </message>
    <message>
        <source>&amp;Sex</source>
        <translation>&amp;Sexo</translation>
    </message>
    <message>
        <source>Sex</source>
        <translation>Sexo</translation>
    </message>
    <message>
        <source>Female</source>
        <translation>Femenino</translation>
    </message>
    <message>
        <source>Male</source>
        <translation>Masculino</translation>
    </message>
    <message>
        <source>Examination</source>
        <translation>Exploración</translation>
    </message>
    <message>
        <source>Exa&amp;mined</source>
        <translation>Explo&amp;ración</translation>
    </message>
    <message>
        <source>Exam date</source>
        <translation>Fecha de la exploración</translation>
    </message>
    <message>
        <source>Age</source>
        <translation>Edad</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Anterior</translation>
    </message>
    <message>
        <source>Previous examination (Left Arrow)</source>
        <translation>Exploración anterior (flecha izquierda)</translation>
    </message>
    <message>
        <source>Examination number</source>
        <translation>Número de la exploración</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Siguiente</translation>
    </message>
    <message>
        <source>Next examination (Right Arrow)</source>
        <translation>Exploración siguiente (flecha derecha)</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Nueva</translation>
    </message>
    <message>
        <source>Add an examination</source>
        <translation>Añadir una exploración</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Eliminar</translation>
    </message>
    <message>
        <source>Remove this examination</source>
        <translation>Quitar esta exploración</translation>
    </message>
    <message>
        <source>&amp;Weight (kg)</source>
        <translation>&amp;Peso (kg)</translation>
    </message>
    <message>
        <source>Weight in kilograms</source>
        <translation>Peso en kilogramos</translation>
    </message>
    <message>
        <source>Weight in kilograms, z-score and centile</source>
        <translation>Peso en kilogramos, puntuación z y percentil</translation>
    </message>
    <message>
        <source>Hei&amp;ght (cm)</source>
        <translation>&amp;Talla (cm)</translation>
    </message>
    <message>
        <source>Length or height in centimetres</source>
        <translation>Longitud o talla en centímetros</translation>
    </message>
    <message>
        <source>Length or height in centimetres, z-score and centile</source>
        <translation>Longitud o talla en centímetros, puntuación z y percentil</translation>
    </message>
    <message>
        <source>Hea&amp;d (cm)</source>
        <translation>&amp;Cabeza (cm)</translation>
    </message>
    <message>
        <source>Head circumference in centimetres</source>
        <translation>Perímetro cefálico en centímetros</translation>
    </message>
    <message>
        <source>Head circumference in centimetres, z-score and centile</source>
        <translation>Perímetro cefálico en centímetros, puntuación z y percentil</translation>
    </message>
    <message>
        <source>Weight</source>
        <translation>Peso</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Talla</translation>
    </message>
    <message>
        <source>Head</source>
        <translation>Cabeza</translation>
    </message>
    <message>
        <source>Weight (kg)</source>
        <translation>Peso (kg)</translation>
    </message>
    <message>
        <source>Length or height (cm)</source>
        <translation>Longitud o talla (cm)</translation>
    </message>
    <message>
        <source>Head circumference (cm)</source>
        <translation>Perímetro cefálico (cm)</translation>
    </message>
    <message>
        <source>Choose the sex to see the reference</source>
        <translation>Elija el sexo para ver la referencia</translation>
    </message>
    <message>
        <source>girls</source>
        <translation>niñas</translation>
    </message>
    <message>
        <source>boys</source>
        <translation>niños</translation>
    </message>
    <message>
        <source>Age (months)</source>
        <translation>Edad (meses)</translation>
    </message>
    <message>
        <source>This is not a number.</source>
        <translation>Esto no es un número.</translation>
    </message>
    <message>
        <source>A measurement is above zero.</source>
        <translation>Una medida es mayor que cero.</translation>
    </message>
    <message>
        <source>The examination lies before the birth.</source>
        <translation>La exploración es anterior al nacimiento.</translation>
    </message>
    <message>
        <source>Needs birth and exam date.</source>
        <translation>Faltan la fecha de nacimiento o la de exploración.</translation>
    </message>
    <message>
        <source>Needs the sex.</source>
        <translation>Falta el sexo.</translation>
    </message>
    <message>
        <source>No reference.</source>
        <translation>Sin referencia.</translation>
    </message>
    <message>
        <source>The reference does not cover this age.</source>
        <translation>La referencia no abarca esta edad.</translation>
    </message>
    <message>
        <source>Beyond what the reference describes.</source>
        <translation>Más allá de lo que describe la referencia.</translation>
    </message>
    <message>
        <source>z-score %1, centile %2</source>
        <translation>puntuación z %1, percentil %2</translation>
    </message>
    <message>
        <source>%ld y %ld m %ld d</source>
        <translation>%ld a %ld m %ld d</translation>
    </message>
    <message>
        <source>The file is damaged (%1).</source>
        <translation>El archivo está dañado (%1).</translation>
    </message>
</context>
</TS>
